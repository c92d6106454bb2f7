from quay import zero as zero
