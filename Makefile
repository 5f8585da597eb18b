# Calls CMake with the presets of CMakePresets.json; `make help` lists the targets.

.DEFAULT_GOAL := help
.PHONY: help run test test-clang test-static fuzz memcheck install deb docs bench instructions bench-page coverage check-format format lint clean
.PHONY: packages packages-run packages-test packages-arm build-run test-arm update-abi update-docs
SHELL := /bin/bash
.SHELLFLAGS := -o pipefail -c
PREFIX ?= /usr/local
TIME ?= 60
DEFAULT := build/default

# "##" describes a target for users, "#!" one for maintainers.
help: ## List the targets
	@echo 'Targets install missing Debian packages first.'
	@echo && echo 'To use the library:'
	@sed -n 's/^\([a-z%-]*\):.*## \(.*\)/  make \1\t\2/p' $(MAKEFILE_LIST) | expand -t 21
	@echo && echo 'To change the library:'
	@sed -n 's/^\([a-z%-]*\):.*#! \(.*\)/  make \1\t\2/p' $(MAKEFILE_LIST) | expand -t 21

packages-run: SECTIONS := run
packages-run: #! Install the packages for building library, tool and examples
packages-test: SECTIONS := run test
packages-test: #! Install those for tests, benchmarks and the documentation, too
packages-arm: SECTIONS := run test arm
packages-arm: #! Install those for ARM, too
packages: #! Install the packages for all targets
packages packages-run packages-test packages-arm:
	@packaging/install-packages packaging/debian-packages.txt $(SECTIONS)

# Other architectures: their compilers, and the libraries that they need.
ARM := arm64 armhf
CROSS := i386 $(ARM)

$(ARM:%=sysroot-%): packages-arm
sysroot-%: packages-test
	@cmake/sysroot $*

.PRECIOUS: build/%/build.ninja
$(CROSS:%=build/%/build.ninja): build/%/build.ninja: | sysroot-%
build/run/build.ninja: | packages-run
	cmake --preset run
build/%/build.ninja: | packages-test
	cmake --preset $*

$(CROSS:%=build-%): build-%: sysroot-%
build-alignment build/alignment/build.ninja: sysroot-armhf

build-run: packages-run build/run/build.ninja
	cmake --build --preset run

build-%: packages-test build/%/build.ninja #! Build a preset: build-debug, build-i386, ...
	cmake --build --preset $*

run: build-run ## Build library, tool and examples, and show the examples
	@examples/show build/run/tools/tavrin/tavrin

test: check-format build-default build-i386 build-sanitize build-thread
test: ## Build, and run every test, also in 32 bits and under sanitizers
	ctest --preset default
	ctest --preset i386
	ctest --preset sanitize
	ctest --preset thread

test-arm: build-default $(ARM:%=build-%) build-alignment #! Build for ARM, and run the tests under emulation
	ctest --preset arm64
	ctest --preset armhf
	ctest --preset alignment

update-abi: $(CROSS:%=build/%/build.ninja) build/default/build.ninja #! Record exported symbols and type layouts for every architecture
	for preset in default $(CROSS); do cmake --build --preset $$preset --target update_abi || exit; done

test-clang: build-default build-clang #! Build with Clang, and run every test
	ctest --preset clang

test-static: build-static #! Build static libraries and a tool that contains them, and run every test
	ctest --preset static

fuzz: packages #! Fuzz each target for TIME seconds (60); keep new inputs and findings
	cmake --preset fuzz -DTAVRIN_FUZZ_SECONDS=$(TIME)
	cmake --build --preset fuzz
	ctest --preset fuzz --parallel $(shell nproc)

memcheck: build-default #! Run the tests of the library under valgrind
	ctest --preset default --label-regex '^downloads$$'
	cd $(DEFAULT) && ctest -T memcheck -C Memcheck -L '^memcheck$$' --no-tests=error --parallel $(shell nproc)

install: build-run ## Install below PREFIX (/usr/local)
	cmake --install build/run --strip --prefix $(PREFIX)

deb: build-default $(CROSS:%=build-%) docs ## Build Debian packages for every architecture, in build/*/packages
	for preset in default $(CROSS); do (cd build/$$preset && cpack) || exit; done

docs: packages-test build/default/build.ninja ## Write the documentation as HTML
	cmake --build --preset default --target docs

update-docs: build-default #! Record the output of the guides' programs, and write it into the pages
	cmake --build --preset default --target update_docs

RESULT := $(DEFAULT)/benchmarks.json
bench: build-default #! Measure speed and memory, compared with other libraries
	@benchmarks/run.py $(DEFAULT) $(RESULT)
	@benchmarks/ratios.py $(RESULT)

instructions: build-default #! Count the instructions of each measurement, also on a loaded machine
	@benchmarks/instructions.py $(DEFAULT)

bench-page: bench #! Measure, and write the numbers into docs/speed.md and benchmarks/limits.md
	@benchmarks/page.py $(RESULT) docs benchmarks/limits.md

coverage: packages-test #! Measure line and branch coverage; fails if it decreases
	cmake --preset coverage
	cmake --build --preset coverage
	@find build/coverage -name '*.gcda' -delete
	ctest --preset coverage
	@gcovr --object-directory build/coverage build/coverage

DIRECTORIES := benchmarks cmake colorimetry diagnostics docs examples fuzz include packaging platform scripts tavrin_driver tests tools
SOURCES := find $(DIRECTORIES) -name '*.cpp'
HEADERS := find $(DIRECTORIES) -name '*.h'

format: packages #! Format every source file
	{ $(SOURCES); $(HEADERS); } | xargs clang-format -i

# Versions of clang-format differ in details.
check-format: packages-test #! Check the format of every source file
	@case $$(clang-format --version) in \
	  *"version 14."*) { $(SOURCES); $(HEADERS); } | xargs clang-format --dry-run --Werror ;; \
	  *) echo "Format not checked: the sources are formatted by clang-format 14, and this is $$(clang-format --version)" ;; \
	esac

# INSTANTIATE_TEST_SUITE_P with an empty prefix is a syntax error for cppcheck, which also needs the macro of the processor.
lint: packages check-format #! Check the sources with clang-format, clang-tidy, cppcheck and shellcheck
	cmake --preset lint
	find .ci $(DIRECTORIES) -type f | xargs grep --files-with-matches --max-count 1 -E '^#!.*\b(ba)?sh$$' | xargs shellcheck
	@mkdir -p build/cppcheck
	cppcheck --project=build/lint/compile_commands.json --cppcheck-build-dir=build/cppcheck --quiet --error-exitcode=1 \
	  --enable=warning,style,performance,portability --suppressions-list=.cppcheck --library=boost --library=googletest \
	  -D__x86_64__ '-DINSTANTIATE_TEST_SUITE_P(...)='
	$(SOURCES) | xargs -P $(shell nproc) -n 1 clang-tidy --quiet -p build/lint

clean: ## Remove everything that was built
	rm -rf build
