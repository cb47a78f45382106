# shellcheck shell=bash
# For programs under sanitizers. To be sourced.

# at_fixed_addresses COMMAND [ARGUMENT...]
#
# Runs the command, and what it starts, without random addresses where that is permitted. Clang 14's
# AddressSanitizer crashes in every fourth start or so where the system places memory with more than
# 28 random bits (sysctl vm.mmap_rnd_bits): sometimes where its own tables have to be.
at_fixed_addresses() {
    if setarch --addr-no-randomize true 2>/dev/null; then
        setarch --addr-no-randomize "$@"
    else
        "$@"
    fi
}
