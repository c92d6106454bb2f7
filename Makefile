# The short way in. `make` builds; see README.md for the rest.

PRESET ?= release
JOBS ?= $(shell nproc)

BUILD_DIR := $(if $(filter release,$(PRESET)),build,build-$(PRESET))
BUILD := cmake --build --preset $(PRESET) -j $(JOBS)
# What the steps of examples/demo run: the command, and the product's classes in Python.
DEMO_TARGETS := modelref ordo_python python_packages

.PHONY: all demo test bench packages lint format clean

all: $(BUILD_DIR)/build.ninja
	$(BUILD)

# Once configured, the build looks after its own configuration.
$(BUILD_DIR)/build.ninja: CMakePresets.json
	cmake --preset $(PRESET)

# Targets that may have installed packages configure anew, since parts are left out whose packages weren't there before.
demo:
	@echo "Installs missing packages and builds what the demo runs: 5 to 8 minutes on two cores the first time."
	dev/install-packages dev/packages-demo.txt
	cmake --preset $(PRESET)
	$(BUILD) --target $(DEMO_TARGETS)
	examples/demo $(BUILD_DIR)

test:
	@echo "Installs missing packages, builds everything and tests it: 9 to 12 minutes on two cores the first time."
	dev/install-packages dev/packages-demo.txt dev/packages-test.txt
	cmake --preset $(PRESET)
	$(BUILD)
	ctest --preset $(PRESET) -j $(JOBS)

bench:
	@echo "Installs missing packages, builds the benchmarks and runs them."
	dev/install-packages dev/packages-demo.txt dev/packages-bench.txt
	cmake --preset $(PRESET)
	$(BUILD) --target $(DEMO_TARGETS) benchmarks
	$(BUILD_DIR)/bin/bench
	PYTHONPATH=$(BUILD_DIR)/python:$(BUILD_DIR)/bench_python /usr/bin/python3 bench/python/python_bench.py
	bench/header_cost.py $(BUILD_DIR)

packages:
	dev/install-packages dev/packages-*.txt

lint: packages
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
