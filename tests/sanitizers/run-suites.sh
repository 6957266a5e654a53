#!/usr/bin/env bash
# Runs every test of the given suites in a process of its own, as ctest does
# (tests share the settings folder, so one process per test keeps them apart),
# and stops at the first failure or sanitizer report.
set -euo pipefail

for suite in "$@"; do
    tests=$("./$suite" --gtest_list_tests | awk '/^[^ ]/ { group = $1 } /^  / { print group $1 }')
    echo "$suite: $(echo "$tests" | wc -l) tests"

    for test in $tests; do
        if ! output=$("./$suite" --gtest_filter="$test" 2>&1); then
            echo "$output"
            echo "FAILED: $suite $test"
            exit 1
        fi
    done
done

echo "all passed"
