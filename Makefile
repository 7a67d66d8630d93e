# The commands of this project. `make` alone lists them; each line is a rule that anyone can run, and
# continuous integration runs nothing else.
.DEFAULT_GOAL := help
.PHONY: help demo build test page page-test page-package setup tsan coverage board packages source-package abi reproducible fuzz fuzz-sample planted-bugs worst-file valgrind test-fleet bare-roots surroundings python python-test bench bench-count bench-board slow-down docs format format-check lint lint-changed mutants mutants-changed mutants-listed mutants-rooms proof proof-check long ci clean

RADIO ?= examples/radios/13ghz-etsi-outdoor1.json
BUILD = build/release
MINUTES ?= 1
PURPOSE ?= test
# Of what changed since the last whole run, or since another revision.
SINCE := $(if $(BASE),--base $(BASE),--changed)

# Told before anything is installed for a build that cannot be.
may_build = mkdir -p "$(BUILD)" 2>/dev/null && test -w "$(BUILD)" || { \
	echo "make: nothing can be written to $(BUILD); name another folder: make $@ BUILD=FOLDER" >&2; exit 1; }

help: ## list the commands
	@sed -n 's/^\([a-z-]*\):.*## \(.*\)/make \1	\2/p' $(MAKEFILE_LIST) | expand -t 20

demo: ## set up, build the tool, and print the power table of an example radio (RADIO=FILE for another, BUILD=FOLDER to build elsewhere)
	@$(may_build)
	scripts/setup build
	test -e "$(BUILD)/build.ninja" || cmake --preset release -B "$(BUILD)" -DQOR_TESTS=OFF --no-warn-unused-cli
	cmake --build "$(BUILD)" --target qor-power
	"$(BUILD)/bin/qor-power" table "$(RADIO)"

build: ## build libraries, tool and tests into build/release (BUILD=FOLDER for another)
	@$(may_build)
	scripts/setup test
	cmake --preset release -B "$(BUILD)"
	cmake --build "$(BUILD)"

test: build ## build and run all tests
	cd "$(BUILD)" && ctest --output-on-failure --no-tests=error -j 2

page: ## build the page for a browser, build/page/qor-power.html, which holds library and analysis as WebAssembly
	scripts/setup page
	scripts/page

page-test: build page ## test the page: its engine byte for byte against the tool, and all of it in two browsers
	scripts/setup page-test
	scripts/page-test

page-package: page ## build and check the Debian package of the page
	scripts/setup packages
	scripts/page-package

setup: ## install what is missing from Debian's packages, for the tests or another PURPOSE=
	scripts/setup $(PURPOSE)

tsan: ## run the tests that start threads under the thread sanitizer
	scripts/setup coverage
	cmake --preset tsan
	cmake --build --preset tsan
	ctest --preset tsan

coverage: build ## run all tests under the address and undefined-behaviour sanitizers; fail below 100 % of the library's lines, branches and conditions
	scripts/coverage

board: build ## build and test everything for the board, under the emulator
	scripts/board

packages: ## build and check the Debian packages of this machine and of the board
	scripts/packages

source-package: ## build and check the Debian source package, which takes what make packages has made
	scripts/source-package

abi: ## compare the library's binary contract with the one kept in abi/, for both machines
	scripts/setup abi
	scripts/abi

reproducible: ## build the libraries in two folders and compare the bytes, for both machines
	scripts/setup board
	scripts/reproducible

fuzz: ## run each fuzzer for a minute on all processors (MINUTES=N for longer)
	scripts/fuzz $(MINUTES)

fuzz-sample: ## count what inputs of the fuzzers cost, and run each fuzzer for 15 seconds in the build of the sanitizers
	scripts/fuzz --count
	scripts/setup coverage
	cmake --preset coverage
	cmake --build --preset coverage --target $$(scripts/fuzz --list | sed 's/^/fuzz_/')
	scripts/fuzz --list | QOR_FUZZ_BUILD=build/coverage QOR_FUZZ_NO_BUILD=1 \
		QOR_FUZZ_WORKERS=1 xargs -P 2 -n 1 scripts/fuzz 15s

planted-bugs: ## plant twenty bugs, one after the other, and look whether a fuzzer finds each within five minutes
	scripts/planted-bugs

worst-file: build ## search for a minute for the radio file that takes most memory and time (MINUTES=N for longer)
	scripts/worst-file --minutes $(MINUTES)

valgrind: build ## run the test programs under valgrind
	scripts/valgrind build/release

test-fleet: build ## have a fleet answered by Slurm, by two hosts over ssh and as Spark would, on this machine; a killed task runs again
	scripts/setup fleet
	tests/fleet/spark build/release/bin/qor-power
	tests/fleet/hosts build/release/bin/qor-power
	tests/fleet/slurm build/release/bin/qor-power

bare-roots: ## run demo and test in bare roots of Debian 12 and 13, as root and as a user with sudo, which takes root and two hours
	scripts/bare-roots

surroundings: ## test in a path with a blank, as another user, without devices, by clang and for 32 bits, which takes root and half an hour
	scripts/surroundings

python: ## build the Python package qor_power into build/release/python
	scripts/setup python
	scripts/python

python-test: ## build and test it and its Debian package
	scripts/setup python
	scripts/python --test

bench: ## time every query beside two yardsticks
	scripts/bench

bench-count: ## count the instructions of every query and check them against their budgets
	scripts/bench --count

bench-board: ## likewise on the board, under the emulator
	scripts/bench --board

slow-down: ## slow each function of the library and look whether bench-count notices, which takes an hour
	scripts/setup bench
	scripts/slow-down

docs: ## build the reference of the public headers and the guides as pages for a browser, in build/docs/html
	scripts/setup docs
	scripts/docs

format: ## format every source file
	scripts/setup format
	scripts/format

format-check: ## fail if a source file is not formatted
	scripts/setup format
	scripts/format --check

lint: ## look for mistakes with clang-tidy, cppcheck and the compiler's analyser
	scripts/setup lint
	scripts/lint $(FRESH)

lint-changed: ## likewise in what changed since that was clean, or since BASE=REVISION, a minute at most
	scripts/setup lint
	scripts/lint $(SINCE) --minutes 0.8

mutants: ## change the library in every small way; fail if the tests let a change through
	scripts/setup test mutants
	scripts/mutants $(FRESH)

mutants-changed: ## likewise where something changed since all were killed, or since BASE=REVISION, a minute at most
	scripts/setup test mutants
	scripts/mutants $(SINCE) --minutes 0.8

mutants-listed: ## try what is listed as unseen on many more files and answers, which takes half an hour
	scripts/setup test mutants
	scripts/mutants --listed

mutants-rooms: ## likewise in desk, analysis and recorder, a fixed sample of one mutant in two hundred, which takes an hour
	scripts/setup coverage
	scripts/mutants-rooms

proof: ## write the page of figures from what the last runs left in build/
	scripts/proof

proof-check: ## fail if a figure of the page is not what the last run gave
	scripts/proof --check

long: ## run everything whole, which takes hours, and write docs/background/proof.md (PARTS="lint fuzz" for some, MINUTES=N for each fuzzer)
	scripts/long $(if $(filter-out file,$(origin MINUTES)),--minutes $(MINUTES)) $(PARTS)

# What fails soonest comes first, and what others need: the mutants and the board use what the tests have built. One
# after the other, as each keeps all processors busy. What is installed, and whether others can build against it, the
# tests tell; the packages of it are for `make long`.
# mutants-changed joins them with proved/mutants.txt, the record of a whole run to compare with: without it
# every mutant counts as changed, and a lot of a hundred would judge the tests by chance.
ci_steps := format-check test lint-changed bench-count \
	$(if $(wildcard proved/mutants.txt),mutants-changed) coverage fuzz-sample tsan board proof-check
ci_seconds := 1800

ci: ## everything that has to pass before a change lands, and how long each step takes
	@begin=$$(date +%s); took=; for step in $(ci_steps); do \
		before=$$(date +%s); $(MAKE) --no-print-directory $$step || exit; now=$$(date +%s); \
		took="$$took $$step $$((now - before)) s,"; \
		echo "ci:$$took $$((now - begin)) s of $(ci_seconds) in all"; \
	done

clean: ## remove everything that was built
	rm -rf build
