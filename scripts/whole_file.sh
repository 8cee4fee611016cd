# shellcheck shell=bash
# Files that are there whole or not at all.

# write_whole FILE COMMAND [ARGUMENT...]: runs the command with one more argument,
# a name beside FILE, and puts what it wrote there in place when it succeeded. A
# failure leaves the old file as it was.
write_whole() {
    local file=$1 part=$1.part
    shift
    if "$@" "$part" && mv -f -- "$part" "$file"; then
        return 0
    fi
    rm -f -- "$part"
    printf '%s cannot be written; it is as it was.\n' "$file" >&2
    return 1
}
