# Quorlane: `make demo` and `make test` work on a fresh Debian 12 machine.

SHELL := /bin/bash
JOBS ?= 2
DEBUG_DIR := build/debug
RELEASE_DIR := build/release
FUZZ_DIR := build/fuzz
ASAN_DIR := build/asan
TSAN_DIR := build/tsan
export CCACHE_BASEDIR := $(CURDIR)
export CCACHE_NOHASHDIR := true

DEBIAN_PACKAGES := build-essential cmake ninja-build pkg-config ccache juce-modules-source libstb-dev \
	fst-dev lv2-dev dpf-source libgtest-dev libbenchmark-dev xvfb xauth clang

ARTEFACTS := $(RELEASE_DIR)/Quorlane_artefacts/Release
VERSION := $(shell sed -n 's/^project.Quorlane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

.PHONY: all deps debug release test fuzz demo install uninstall install-user deb dist-linux package-test \
	bench art clean windows windows-test windows-bench sanitize fuzz-long

all: release

# Installs only what is missing, without questions.
deps:
	@missing=""; \
	for p in $(sort $(DEBIAN_PACKAGES)); do \
		dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
		echo "Installing from Debian:$$missing"; \
		SUDO=""; [ "$$(id -u)" -ne 0 ] && SUDO="sudo"; \
		$$SUDO apt-get update -qq && \
		DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq $$missing >/dev/null; \
	fi

$(DEBUG_DIR)/build.ninja: | deps
	cmake -S . -B $(DEBUG_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug

$(RELEASE_DIR)/build.ninja: | deps
	cmake -S . -B $(RELEASE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUORLANE_BUILD_TESTS=OFF

debug: deps $(DEBUG_DIR)/build.ninja
	cmake --build $(DEBUG_DIR) -j $(JOBS)

release: deps $(RELEASE_DIR)/build.ninja
	cmake --build $(RELEASE_DIR) -j $(JOBS) --target Quorlane_VST Quorlane_VST3 Quorlane_LV2 Quorlane_CLAP Quorlane_Standalone quorlane-render

# Every test suite, under a virtual display so editor tests can open windows,
# then a short run of each fuzzer. The DAW suite runs the plug-in in Ardour,
# and Qtractor's scanner on the CLAP build.
test: DEBIAN_PACKAGES += ardour qtractor
# A failed test is run once more before it fails the run: the LV2 editor's
# follow check misses its window now and then in a whole-suite run (never
# yet alone); see docs/testing.md.
test: debug
	cd $(DEBUG_DIR) && $(XVFB) ctest --output-on-failure -j 1 --repeat until-pass:2
	@$(MAKE) --no-print-directory fuzz

# The fuzzers need clang and an instrumented build of their own.
$(FUZZ_DIR)/build.ninja: | deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DQUORLANE_BUILD_FUZZERS=ON -DQUORLANE_BUILD_TESTS=OFF -DQUORLANE_BUILD_BENCHMARKS=OFF

fuzz: deps $(FUZZ_DIR)/build.ninja
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target quorlane_fuzzers
	cd $(FUZZ_DIR) && ctest --output-on-failure -j 1

# The test suites again with AddressSanitizer and UndefinedBehaviorSanitizer,
# and the one that runs an audio thread beside the message thread with
# ThreadSanitizer. Any report fails the run.
# Debian 12's leak checker (GCC 12) may take a plug-in's thread-local block,
# which glibc allocates with malloc, for an old glibc's and read a bogus range
# from in front of it; its tracer then crashes after the tests have passed.
# Not following dynamic thread-local blocks avoids that.
SANITIZE_CMAKE := -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUORLANE_BUILD_BENCHMARKS=OFF
ASAN_SUITES := quorlane_engine_tests quorlane_tests quorlane_vst2_abi_tests quorlane_host_tests
TSAN_SUITES := quorlane_realtime_tests
# A virtual display whose screen saver never blanks it: the editor checks
# read the screen back.
XVFB := xvfb-run -a -s "-screen 0 1280x1024x24 -s 0"

$(ASAN_DIR)/build.ninja: | deps
	cmake -S . -B $(ASAN_DIR) $(SANITIZE_CMAKE) -DQUORLANE_SANITIZE=address,undefined

$(TSAN_DIR)/build.ninja: | deps
	cmake -S . -B $(TSAN_DIR) $(SANITIZE_CMAKE) -DQUORLANE_SANITIZE=thread

sanitize: deps $(ASAN_DIR)/build.ninja $(TSAN_DIR)/build.ninja
	ASAN_OPTIONS=detect_leaks=0 cmake --build $(ASAN_DIR) -j $(JOBS) --target $(ASAN_SUITES)
	cd $(ASAN_DIR)/tests && ASAN_OPTIONS=intercept_tls_get_addr=0 LSAN_OPTIONS=suppressions=$(CURDIR)/tests/sanitizers/leaks.supp:print_suppressions=0 \
		UBSAN_OPTIONS=print_stacktrace=1 $(XVFB) $(CURDIR)/tests/sanitizers/run-suites.sh $(ASAN_SUITES)
	cmake --build $(TSAN_DIR) -j $(JOBS) --target $(TSAN_SUITES)
	cd $(TSAN_DIR)/tests && TSAN_OPTIONS=halt_on_error=1:suppressions=$(CURDIR)/tests/sanitizers/races.supp $(XVFB) $(CURDIR)/tests/sanitizers/run-suites.sh $(TSAN_SUITES)

# Each reader fuzzer for ten million inputs or twenty minutes, whichever comes
# first, on documents of up to 4 KB (a few presets of a bank, which keeps them
# at thousands of inputs a second); then the whole-state round trip, on whole
# states, for twenty minutes (about 1 h 20 min in all; not part of CI).
# Findings stay in build/fuzz/fuzz/<fuzzer>-corpus.
READER_FUZZERS := midi_map:midimap user_settings:settings preset_element:preset bank_element:bank

fuzz-long: deps $(FUZZ_DIR)/build.ninja
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target quorlane_fuzzers
	cd $(FUZZ_DIR)/fuzz && for f in $(READER_FUZZERS); do name=quorlane_fuzz_$${f%%:*}; \
		./$$name -runs=10000000 -max_total_time=1200 -max_len=4096 -print_final_stats=1 \
			$$name-corpus $(CURDIR)/tests/corpus/$${f##*:} || exit 1; done
	cd $(FUZZ_DIR)/fuzz && ./quorlane_fuzz_state_chunk -max_total_time=1200 -print_final_stats=1 \
		quorlane_fuzz_state_chunk-corpus $(CURDIR)/tests/corpus/state

# `make install` and `make uninstall`, as packagers know them: what `make
# release` built (never building it here, so that `sudo make install` runs no
# compiler as root), below DESTDIR, in the folders named here.
PREFIX ?= /usr/local
BINDIR ?= $(PREFIX)/bin
DATADIR ?= $(PREFIX)/share
MANDIR ?= $(DATADIR)/man
DOCDIR ?= $(DATADIR)/doc/quorlane
LV2_DIR ?= $(PREFIX)/lib/lv2
VST3_DIR ?= $(PREFIX)/lib/vst3
VST2_DIR ?= $(PREFIX)/lib/lxvst
CLAP_DIR ?= $(PREFIX)/lib/clap
INSTALL_FILES := DESTDIR="$(DESTDIR)" BINDIR="$(BINDIR)" DATADIR="$(DATADIR)" MANDIR="$(MANDIR)" DOCDIR="$(DOCDIR)" \
	LV2_DIR="$(LV2_DIR)" VST3_DIR="$(VST3_DIR)" VST2_DIR="$(VST2_DIR)" CLAP_DIR="$(CLAP_DIR)" tools/linux/install-files.sh

install:
	@$(INSTALL_FILES) install $(RELEASE_DIR)
	@echo "Installed Quorlane $(VERSION): plug-ins in $(DESTDIR)$(LV2_DIR), $(DESTDIR)$(VST3_DIR), $(DESTDIR)$(VST2_DIR) and $(DESTDIR)$(CLAP_DIR);" \
		"quorlane and quorlane-render in $(DESTDIR)$(BINDIR)."

uninstall:
	@$(INSTALL_FILES) uninstall $(RELEASE_DIR)
	@echo "Removed Quorlane from $(DESTDIR)$(PREFIX)."

# The release build, installed for the current user where Linux hosts look.
install-user: release
	@mkdir -p $(HOME)/.vst $(HOME)/.vst3 $(HOME)/.lv2 $(HOME)/.clap
	@install -m 755 $(ARTEFACTS)/VST/Quorlane.so $(HOME)/.vst/Quorlane.so
	@rm -rf $(HOME)/.vst3/Quorlane.vst3 $(HOME)/.lv2/Quorlane.lv2
	@cp -R $(ARTEFACTS)/VST3/Quorlane.vst3 $(HOME)/.vst3/
	@cp -R $(ARTEFACTS)/LV2/Quorlane.lv2 $(HOME)/.lv2/
	@install -m 644 $(ARTEFACTS)/CLAP/Quorlane.clap $(HOME)/.clap/Quorlane.clap
	@echo
	@echo "Installed Quorlane for $$(id -un):"
	@echo "  VST 2.4  $(HOME)/.vst/Quorlane.so"
	@echo "  VST3     $(HOME)/.vst3/Quorlane.vst3"
	@echo "  LV2      $(HOME)/.lv2/Quorlane.lv2   (URI urn:orlo:quorlane)"
	@echo "  CLAP     $(HOME)/.clap/Quorlane.clap"
	@echo "  App      $(ARTEFACTS)/Standalone/Quorlane"
	@echo "Rescan plug-ins in your DAW (Ardour, Reaper, Bitwig) and insert \"Quorlane\" on a stereo track or bus."

# dist/quorlane_<version>_amd64.deb, made with dpkg-deb (see docs/packaging.md).
deb: DEBIAN_PACKAGES += dpkg-dev
deb: release
	tools/linux/make-deb.sh $(RELEASE_DIR) dist

# dist/Quorlane-<version>-linux-x64.tar.gz, with its own install.sh.
dist-linux: release
	tools/linux/pack-tarball.sh $(RELEASE_DIR) dist

# Every Linux install route tried for real: `make install` into a staging
# folder, the .deb installed and removed with apt-get, the tarball's
# install.sh for a user and for the system, with hosts loading what each put
# in place (installs system-wide: run as root, or with sudo at hand).
PACKAGE_TEST_PACKAGES := dpkg-dev lintian lilv-utils man-db ardour
package-test: DEBIAN_PACKAGES += $(PACKAGE_TEST_PACKAGES)
package-test: deb dist-linux $(DEBUG_DIR)/build.ninja
	cmake --build $(DEBUG_DIR) -j $(JOBS) --target quorlane_vst2_abi_tests quorlane_clap_host_tests quorlane_host_tests quorlane_daw_tests
	tools/linux/package-test.sh $(RELEASE_DIR) $(DEBUG_DIR) dist

# The plug-ins installed for the current user, and the renderer's demo in demo/.
demo: install-user
	@tools/render-demo.sh $(RELEASE_DIR)/bin/quorlane-render demo

bench: deps
	cmake -S . -B $(RELEASE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUORLANE_BUILD_TESTS=OFF
	cmake --build $(RELEASE_DIR) -j $(JOBS) --target quorlane_bench
	$(RELEASE_DIR)/bench/quorlane_bench --benchmark_repetitions=3 --benchmark_report_aggregates_only=true

# Redraws the editor's images and skin.xml into resources/ and the
# application's icons into packaging/linux/icons/ (all committed), and leaves a picture of the assembled panel in build/debug/panel-preview.png.
art: DEBIAN_PACKAGES += fonts-urw-base35
art: deps $(DEBUG_DIR)/build.ninja
	cmake --build $(DEBUG_DIR) -j $(JOBS) --target quorlane-art
	$(DEBUG_DIR)/bin/quorlane-art resources --preview $(DEBUG_DIR)/panel-preview.png --icons packaging/linux/icons

# Windows x64, cross-built with MinGW-w64 in one release tree (no LTO) that
# holds both what the zip ships and the test suites, which run under Wine.
WINDOWS_DIR := build/windows
WINDOWS_PACKAGES := g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 libz-mingw-w64-dev libstb-dev \
	wine wine64 zip xvfb xauth

$(WINDOWS_DIR)/build.ninja: | deps
	cmake -S . -B $(WINDOWS_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release \
		-DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake

windows: DEBIAN_PACKAGES += $(WINDOWS_PACKAGES)
windows: deps $(WINDOWS_DIR)/build.ninja
	cmake --build $(WINDOWS_DIR) -j $(JOBS) --target Quorlane_VST Quorlane_VST3 Quorlane_CLAP Quorlane_Standalone quorlane-render
	tools/windows/pack.sh $(WINDOWS_DIR) dist

# The test suites and the Windows checks, under Wine in a prefix of the
# build's own, on a virtual display.
windows-test: DEBIAN_PACKAGES += $(WINDOWS_PACKAGES)
windows-test: windows
	cmake --build $(WINDOWS_DIR) -j $(JOBS)
	tools/windows/run-tests.sh $(WINDOWS_DIR)

# The same benchmarks in the Linux release build and in the Windows build under
# Wine, one after the other, with the Windows build's cost as a ratio.
windows-bench: DEBIAN_PACKAGES += $(WINDOWS_PACKAGES)
windows-bench: deps $(WINDOWS_DIR)/build.ninja
	cmake -S . -B $(RELEASE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUORLANE_BUILD_TESTS=OFF
	cmake --build $(RELEASE_DIR) -j $(JOBS) --target quorlane_bench
	cmake -S . -B $(WINDOWS_DIR) -DQUORLANE_BUILD_BENCHMARKS=ON
	cmake --build $(WINDOWS_DIR) -j $(JOBS) --target quorlane_bench
	tools/windows/compare-bench.sh $(RELEASE_DIR)/bench/quorlane_bench $(WINDOWS_DIR)/bench/quorlane_bench.exe $(WINDOWS_DIR)

clean:
	rm -rf build
