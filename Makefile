# The everyday commands; the build itself is CMake's (see CMakePresets.json).

.DEFAULT_GOAL := help
.PHONY: help run test test-clang fuzz memcheck install deb docs bench instructions bench-page coverage check-format format lint clean
.PHONY: packages packages-run packages-test packages-arm build-run test-arm update-abi update-docs
SHELL := /bin/bash
.SHELLFLAGS := -o pipefail -c
PREFIX ?= /usr/local
TIME ?= 60
DEFAULT := build/default

help: ## Show this list
	@echo 'What these commands need and the machine lacks, they install first.'
	@sed -n 's/^\([a-z%-]*\):.*## \(.*\)/  make \1\t\2/p' $(MAKEFILE_LIST) | expand -t 21

packages-run: SECTIONS := run
packages-test: SECTIONS := run test
packages-arm: SECTIONS := run test arm
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

build-run: packages-run build/run/build.ninja
	cmake --build --preset run

build-%: packages-test build/%/build.ninja ## Build one of the presets: build-debug, build-i386, ...
	cmake --build --preset $*

run: build-run ## Build library, tool and examples, and show the examples
	@examples/show build/run/tools/tavrin/tavrin

test: check-format build-default build-i386 build-sanitize build-thread
test: ## Build, and run every test, also in 32 bits and under sanitizers
	ctest --preset default
	ctest --preset i386
	ctest --preset sanitize
	ctest --preset thread

test-arm: build-default $(ARM:%=build-%) ## Build for ARM, and run the tests under emulation
	ctest --preset arm64
	ctest --preset armhf

update-abi: $(CROSS:%=build/%/build.ninja) build/default/build.ninja ## Record what the libraries export and the layout of their types
	for preset in default $(CROSS); do cmake --build --preset $$preset --target update_abi || exit; done

test-clang: build-clang ## Build with Clang, and run every test
	ctest --preset clang

fuzz: packages ## Fuzz each target for TIME seconds (60) and keep what is new and what is found
	cmake --preset fuzz -DTAVRIN_FUZZ_SECONDS=$(TIME)
	cmake --build --preset fuzz
	ctest --preset fuzz --parallel $(shell nproc)

memcheck: build-default ## Run the tests of the library under valgrind, in a quarter of an hour
	ctest --preset default --tests-regex XmlConformance.SuiteIsInstalled
	scripts/memcheck $(DEFAULT)

install: build-default ## Install below PREFIX (/usr/local)
	cmake --install $(DEFAULT) --strip --prefix $(PREFIX)

deb: build-default build-i386 docs ## Make Debian packages, 64-bit and 32-bit, in build/*/packages
	for preset in default i386; do (cd build/$$preset && cpack) || exit; done

docs: packages-test build/default/build.ninja ## Write the documentation as HTML
	cmake --build --preset default --target docs

update-docs: build-default ## Record the output of the programs of the guides, and write it into the pages
	cmake --build --preset default --target update_docs

RESULT := $(DEFAULT)/benchmarks.json
bench: build-default ## Measure speed and memory beside other libraries, and print the ratios
	@benchmarks/run.py $(DEFAULT) $(RESULT)
	@benchmarks/ratios.py $(RESULT)

instructions: build-default ## Count the instructions of each measurement, as a loaded machine can, too
	@benchmarks/instructions.py $(DEFAULT)

bench-page: bench ## The same, and place the numbers in docs/speed.md
	@benchmarks/page.py $(RESULT) docs

coverage: packages-test ## Measure which lines and branches the tests reach, which are not to become fewer
	cmake --preset coverage
	cmake --build --preset coverage
	@find build/coverage -name '*.gcda' -delete
	ctest --preset coverage
	@gcovr --object-directory build/coverage build/coverage

ROOMS := benchmarks cmake colorimetry diagnostics docs examples fuzz include packaging platform scripts tavrin_driver tests tools
SOURCES := find $(ROOMS) -name '*.cpp'
HEADERS := find $(ROOMS) -name '*.h'

format: packages ## Format every source file
	{ $(SOURCES); $(HEADERS); } | xargs clang-format -i

check-format: packages-test
	@{ $(SOURCES); $(HEADERS); } | xargs clang-format --dry-run --Werror

# cppcheck takes a test's empty prefix for a mistake in the language, and knows no machine by itself.
lint: packages check-format build/lint/build.ninja ## Check the sources' style and look for mistakes, in half an hour
	find .ci $(ROOMS) -type f | xargs grep --files-with-matches --max-count 1 -E '^#!.*\b(ba)?sh$$' | xargs shellcheck
	@mkdir -p build/cppcheck
	cppcheck --project=build/lint/compile_commands.json --cppcheck-build-dir=build/cppcheck --quiet --error-exitcode=1 \
	  --enable=warning,style,performance,portability --suppressions-list=.cppcheck --library=boost --library=googletest \
	  -D__x86_64__ '-DINSTANTIATE_TEST_SUITE_P(...)='
	$(SOURCES) | xargs -P $(shell nproc) -n 1 clang-tidy --quiet -p build/lint

clean: ## Remove everything that was built
	rm -rf build
