# Compares what stands in blocks on the pages with where it comes from. The files of tests/docs come first, then the pages.
#
# In the tests `// [snippet NAME]` and `// [end]` stand around code. On a page a comment ahead of a block says what it is:
#
#   <!-- snippet: NAME -->     code between these marks, which a test compiles and runs
#   <!-- from: FILE -->        lines of a file
#   <!-- file: NAME -->        a file that the page's commands use; tests/docs/run_page.sh writes it
#   <!-- run -->               commands that this script runs; <!-- run: fails --> those that have to fail
#   <!-- prints -->            what the commands above it print
#   <!-- not run: REASON -->   commands, and other blocks, that nothing runs
#
# A page with `<!-- whole page: tests/docs/NAME_test.cpp -->` has a test that takes all of its blocks.

function complain(where, text) { print "check: " where ": " text > "/dev/stderr"; failed = 1 }

function indent_of(line) { match(line, /^ */); return RLENGTH }

# The lines without the indentation that all of them have.
function dedented(lines, count,    n, least, text)
{
    least = -1
    for (n = 1; n <= count; ++n)
        if (lines[n] ~ /[^ ]/ && (least < 0 || indent_of(lines[n]) < least))
            least = indent_of(lines[n])
    text = ""
    for (n = 1; n <= count; ++n)
        text = text substr(lines[n], least + 1) "\n"
    return text
}

function load(path,    line, n)
{
    if (path in loaded)
        return loaded[path]
    n = 0
    while ((getline line < path) > 0)
        content[path, ++n] = line
    close(path)
    return loaded[path] = n
}

# Whether the block is a run of lines of a file, at any indentation.
function stands_in(path, lines, count,    total, first, n, run)
{
    total = load(path)
    for (first = 1; first + count - 1 <= total; ++first)
    {
        if (index(content[path, first], substr(lines[1], indent_of(lines[1]) + 1)) == 0)
            continue
        for (n = 1; n <= count; ++n)
            run[n] = content[path, first + n - 1]
        if (dedented(run, count) == dedented(lines, count))
            return 1
    }
    return 0
}

function mark_of(kind,    n)
{
    for (n = 1; n <= marks; ++n)
        if (kinds[n] == kind)
            return n
    return 0
}

function check_block(where,    n, name)
{
    if (n = mark_of("snippet"))
    {
        name = values[n]
        used[name] = 1
        if (!(name in snippet))
            complain(where, "no test has a snippet " name)
        else if (snippet[name] != dedented(block, blockLines))
            complain(where, "the block differs from the snippet " name " in " origin[name])
    }
    if (n = mark_of("from"))
        if (!stands_in(values[n], block, blockLines))
            complain(where, "the block does not stand in " values[n])
    if (mark_of("not run"))
        return
    if (language ~ /^(cpp|xml|cmake|sh)$/ && !wholePage && !mark_of(language == "cpp" ? "snippet" : language == "sh" ? "run" : "file") && !mark_of("from") && !mark_of("file"))
        complain(where, "a comment has to say where the block comes from; see scripts/check_docs.awk")
}

FNR == 1 { page = FILENAME ~ /\.md$/; inBlock = 0; inSnippet = 0; marks = 0; wholePage = 0 }

!page && /^ *\/\/ \[snippet [^ ]*\]$/ {
    name = $0
    sub(/^.*\[snippet /, "", name)
    sub(/\]$/, "", name)
    if (name in snippet || inSnippet)
        complain(FILENAME ":" FNR, "a second snippet " name)
    inSnippet = 1
    count = 0
    next
}
!page && /^ *\/\/ \[end\]$/ {
    snippet[name] = dedented(code, count)
    origin[name] = FILENAME
    inSnippet = 0
    next
}
!page { if (inSnippet) code[++count] = $0; next }

inBlock && $0 == fence { inBlock = 0; check_block(FILENAME ":" FNR); marks = 0; next }
inBlock { block[++blockLines] = $0; next }
/^ *```/ {
    match($0, /^ *```/)
    fence = substr($0, 1, RLENGTH)
    language = substr($0, RLENGTH + 1)
    inBlock = 1
    blockLines = 0
    next
}
/^<!-- whole page: .* -->$/ {
    wholePage = 1
    test = $0
    gsub(/^<!-- whole page: | -->$/, "", test)
    if (load(test) == 0)
        complain(FILENAME ":" FNR, "there is no " test)
    next
}
/^ *<!-- .* -->$/ {
    mark = $0
    gsub(/^ *<!-- | -->$/, "", mark)
    colon = index(mark, ": ")
    kinds[++marks] = colon ? substr(mark, 1, colon - 1) : mark
    values[marks] = colon ? substr(mark, colon + 2) : ""
    next
}
/[^ ]/ { marks = 0 }

END {
    for (name in snippet)
        if (!(name in used))
            complain(origin[name], "no page has the snippet " name)
    exit failed
}
