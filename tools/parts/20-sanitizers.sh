#!/bin/sh
# the same under the address and undefined behaviour sanitizers, with inputs of the fuzzers
exec tools/test_preset.sh asan
