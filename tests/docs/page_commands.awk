# Makes a shell script of a page: its files are written, its commands run, and what they print is compared. What the
# comments mean is said in scripts/check_docs.awk; `<!-- uses: FILE ... -->` names files of the source tree to copy first.
BEGIN {
    print "fail() { echo \"line $1: this block did not do what the page says; it printed:\"; cat ../printed; exit 1; }"
}
inBlock && $0 == fence {
    if (kind != "")
        print "END_OF_BLOCK"
    if (kind ~ /^run/) {
        print "bash -eu ../commands_of_block >../printed 2>&1 && status=0 || status=$?"
        print "[ $status " (kind == "run" ? "-eq" : "-ne") " 0 ] || fail " FNR
    }
    else if (kind == "prints")
        print "diff -u ../expected ../printed || fail " FNR
    inBlock = 0
    kind = ""
    next
}
inBlock { if (kind != "") print; next }
/^ *```/ {
    match($0, /^ *```/)
    fence = substr($0, 1, RLENGTH)
    inBlock = 1
    if (kind != "")
        print "cat >'" (kind == "file" ? name : kind == "prints" ? "../expected" : "../commands_of_block") "' <<'END_OF_BLOCK'"
    next
}
/^ *<!-- uses: .* -->$/ {
    gsub(/^ *<!-- uses: | -->$/, "")
    for (n = split($0, path, " "); n > 0; --n)
        print "cp \"$QUIVER_SOURCE_DIR\"/" path[n] " ."
    next
}
/^ *<!-- file: .* -->$/ { kind = "file"; name = $0; gsub(/^ *<!-- file: | -->$/, "", name); next }
/^ *<!-- (run|run: fails|prints) -->$/ { kind = $0; gsub(/^ *<!-- | -->$/, "", kind); next }
/^ *<!-- / { next }
/[^ ]/ { kind = "" }
