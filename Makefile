# The two commands of the README, and a few more for developers.
#   make demo   install what is missing, build Release, run the tool on samples/
#   make test   install what is missing, build with ASan+UBSan, run ctest
#   make coverage   line and branch coverage of the library and the tool by the tests
JOBS ?= $(shell nproc)
BUILD_RELEASE ?= build/release
BUILD_TEST ?= build/test
BUILD_FUZZ ?= build/fuzz
DEMO_OUT ?= demo-output

DEB_DIR ?= build/deb

.PHONY: deps demo test test-release coverage release bench fuzz fuzz-corpus crash-test tsan clean deb deb-test

deps:
	@scripts/deps.sh

release: deps
	@cmake -S . -B $(BUILD_RELEASE) -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILEINFO_BUILD_TESTS=OFF -DFILEINFO_BUILD_PYTHON=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_RELEASE) -j $(JOBS)

demo: release
	@scripts/demo.sh $(BUILD_RELEASE) $(DEMO_OUT)

test: deps
	@cmake -S . -B $(BUILD_TEST) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DFILEINFO_SANITIZE=ON -DFILEINFO_BUILD_PYTHON=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_TEST) -j $(JOBS)
	@cd $(BUILD_TEST) && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j $(JOBS) $(CTEST_ARGS)

# The tests in a Release build, so that an optimised build cannot break
# unnoticed (warnings as errors here too).
test-release: deps
	@cmake -S . -B build/test-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILEINFO_BUILD_PYTHON=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build build/test-release -j $(JOBS)
	@cd build/test-release && ctest --output-on-failure -j $(JOBS) $(CTEST_ARGS)

# Line and branch coverage of the library and the tool by the tests: a Debug
# build with gcov in $(BUILD_COVERAGE), the counters reset, ctest, then gcovr
# over the library and tool sources only (not the tests, benchmarks, fuzz
# targets, sample maker or Python binding). The HTML report is written to
# $(BUILD_COVERAGE)/html/index.html.
BUILD_COVERAGE ?= build/coverage
COVERAGE_FILTER = $(foreach d,platform utils riff imaging metadata zipcontainer fill fileinfo tools,--filter '$(CURDIR)/$(d)/')
COVERAGE_EXCLUDE = --exclude '$(CURDIR)/tools/mksamples/' --exclude '$(CURDIR)/(tests|bench|fuzz|python|build)/'

coverage: deps
	@cmake -S . -B $(BUILD_COVERAGE) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DFILEINFO_COVERAGE=ON -DFILEINFO_BUILD_PYTHON=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_COVERAGE) -j $(JOBS)
	@find $(BUILD_COVERAGE) -name '*.gcda' -delete
	@cd $(BUILD_COVERAGE) && ctest --output-on-failure -j $(JOBS) $(CTEST_ARGS)
	@mkdir -p $(BUILD_COVERAGE)/html
	@gcovr -r . --object-directory $(BUILD_COVERAGE) $(COVERAGE_FILTER) $(COVERAGE_EXCLUDE) \
	  --exclude-throw-branches --exclude-unreachable-branches --gcov-ignore-parse-errors -j $(JOBS) \
	  --html-details $(BUILD_COVERAGE)/html/index.html --print-summary

bench: deps
	@cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILEINFO_BUILD_TESTS=OFF -DFILEINFO_BUILD_BENCH=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build build/bench -j $(JOBS)

fuzz: deps
	@CC=clang CXX=clang++ cmake -S . -B $(BUILD_FUZZ) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFILEINFO_BUILD_TESTS=OFF -DFILEINFO_BUILD_TOOLS=OFF -DFILEINFO_BUILD_FUZZ=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_FUZZ) -j $(JOBS)

# Grows each fuzz corpus in fuzz/corpus/ for FUZZ_SECONDS from what it
# holds and the writers' documents, then minimises it in place (-merge=1).
FUZZ_SECONDS ?= 90
fuzz-corpus: fuzz
	@scripts/fuzz_corpus.sh $(BUILD_FUZZ) $(BUILD_TEST) $(FUZZ_SECONDS)

# The crash test with its full count of kills (ctest runs 100 per format).
crash-test: deps
	@cmake -S . -B $(BUILD_TEST) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DFILEINFO_SANITIZE=ON -DFILEINFO_BUILD_PYTHON=ON -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build $(BUILD_TEST) -j $(JOBS) --target fileinfo_tool reliability_documents fi_pause_shim
	@python3 tests/reliability/crash_test.py --tool $(BUILD_TEST)/tools/fileinfo/fileinfo \
	  --documents $(BUILD_TEST)/tests/reliability/reliability_documents \
	  --shim $(BUILD_TEST)/tests/reliability/libfi_pause_shim.so --samples samples --kills 1000

# The thread test under ThreadSanitizer, in a build of its own.
tsan: deps
	@cmake -S . -B build/tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFILEINFO_TSAN=ON -DFILEINFO_BUILD_TOOLS=OFF -DFILEINFO_WERROR=ON >/dev/null
	@cmake --build build/tsan -j $(JOBS) --target test_reliability
	@TSAN_OPTIONS="suppressions=$(CURDIR)/tests/reliability/tsan.supp second_deadlock_stack=1" \
	  build/tsan/tests/reliability/test_reliability --gtest_filter='Threads.*'

# Debian packages in $(DEB_DIR), built from a copy of the tree the way a
# distribution builds: Release, the tests run by dh_auto_test, warnings not
# errors. DEB_BUILD_OPTIONS=nocheck skips the tests.
deb:
	@scripts/deps-deb.sh
	@rm -rf $(DEB_DIR) && mkdir -p $(DEB_DIR)/fileinfo
	@tar --exclude=./build --exclude=./$(DEMO_OUT) --exclude=./.git -cf - . | tar -C $(DEB_DIR)/fileinfo -xf -
	@cd $(DEB_DIR)/fileinfo && dpkg-buildpackage -us -uc -b -j$(JOBS) > ../build.log 2>&1 || { tail -50 ../build.log; exit 1; }
	@ls $(DEB_DIR)/*.deb

# The packages built, checked: file lists, the tool and the thumbnailer run
# from an unpacked root on the samples, lintian without errors.
deb-test: deb
	@tests/packaging/check_packages.sh $(DEB_DIR)

clean:
	rm -rf build $(DEMO_OUT)
