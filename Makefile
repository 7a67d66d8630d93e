# The commands of this project. `make` alone lists them; each line is a rule that anyone can run, and
# continuous integration runs nothing else.
.DEFAULT_GOAL := help
.PHONY: help demo build test setup asan tsan valgrind format format-check lint ci clean

RADIO ?= examples/radios/13ghz-etsi-outdoor1.json

help: ## list the commands
	@sed -n 's/^\([a-z-]*\):.*## \(.*\)/make \1	\2/p' $(MAKEFILE_LIST) | expand -t 20

demo: build ## set up, build, and print the power table of an example radio (RADIO=FILE for another)
	build/release/bin/qor-power table $(RADIO)

build: setup ## build libraries, tool and tests into build/release
	cmake --preset release
	cmake --build --preset release

test: build ## build and run all tests
	ctest --preset release

setup: ## install what is missing from Debian's packages
	scripts/setup

asan: setup ## run all tests under the address and undefined-behaviour sanitizers
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

tsan: setup ## run all tests under the thread sanitizer
	cmake --preset tsan
	cmake --build --preset tsan
	ctest --preset tsan

valgrind: build ## run the test programs under valgrind
	scripts/valgrind build/release

format: setup ## format every source file
	scripts/format

format-check: setup ## fail if a source file is not formatted
	scripts/format --check

lint: build ## run clang-tidy over the sources
	scripts/lint build/release

ci: format-check test asan valgrind lint ## everything that has to pass before a change lands

clean: ## remove everything that was built
	rm -rf build
