# awk -f changelog.awk CHANGELOG.md: the items of the newest section, as Debian writes them, in at most 80 columns.

function flush(    words, count, i, line)
{
    count = split(item, words)
    line = "  *"
    for (i = 1; i <= count; ++i) {
        if (length(line) + 1 + length(words[i]) > 80) {
            print line
            line = "   "
        }
        line = line " " words[i]
    }
    if (count)
        print line
    item = ""
}

/^## / && ++sections > 1 { exit }
/^- / { flush(); item = substr($0, 3) }
/^  / { item = item " " $0 }
END { flush() }
