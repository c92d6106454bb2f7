// A shared library without content, to measure what loading any library costs.
