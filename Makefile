# The short way in. `make` builds; see README.md for the rest.

PRESET ?= release
JOBS ?= $(shell nproc)

BUILD_DIR := $(if $(filter release,$(PRESET)),build,build-$(PRESET))

.PHONY: all packages demo test bench lint format clean

all: $(BUILD_DIR)/build.ninja
	cmake --build --preset $(PRESET) -j $(JOBS)

# Once configured, the build looks after its own configuration.
$(BUILD_DIR)/build.ninja: CMakePresets.json
	cmake --preset $(PRESET)

packages:
	dev/install-packages

demo: packages
	$(MAKE) --no-print-directory all
	examples/demo $(BUILD_DIR)

test: packages
	$(MAKE) --no-print-directory all
	ctest --preset $(PRESET) -j $(JOBS)

bench: packages
	$(MAKE) --no-print-directory all
	$(BUILD_DIR)/bin/bench
	[ ! -d $(BUILD_DIR)/bench_python ] || PYTHONPATH=$(BUILD_DIR)/python:$(BUILD_DIR)/bench_python \
	  /usr/bin/python3 bench/python/python_bench.py

lint:
	dev/install-packages dev/packages.txt dev/packages-lint.txt
	cmake --preset lint
	cmake --build --preset lint
	dev/check_format
	dev/check_includes.py --generated build-lint/generated
	dev/check_types
	dev/check_clang build-lint -j $(JOBS)

format:
	dev/install-packages dev/packages-lint.txt
	dev/check_format --fix

clean:
	rm -rf build build-*/
