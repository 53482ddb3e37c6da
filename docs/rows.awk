# Makes a member group of each row of declarations, so that the docstring before a row serves all of it.
#
# A row starts with a `///` docstring and ends at the next blank line, docstring, label or closing brace. Nothing is
# added but the marks of the group, at the ends of lines, so that line numbers stay. Defaulted copies and destructors
# outside such a row have nothing to tell and are left out.

function indentation(line) { match(line, /^ */); return RLENGTH }

function close_row() {
    if (declarations > 1) {
        lines[begin - 1] = lines[begin - 1] " /*!@{*/"
        lines[last] = lines[last] " /*!@}*/"
    }
    declarations = 0
    in_row = 0
}

{ lines[NR] = $0 }

/^ *\/\/\/([^<]|$)/ {
    if (!in_row || declarations > 0) {
        close_row()
        begin = NR
        depth = indentation($0)
        in_row = 1
    }
    next
}

in_row {
    if ($0 ~ /^ *$/ || indentation($0) < depth || $0 ~ /^ *(class|struct|enum|namespace) [^;]*$/) {
        close_row()
    } else {
        if (indentation($0) == depth && $0 !~ /^ *([{}#]|template )/) {
            ++declarations
        }
        last = NR
    }
}

!in_row && /(const&|&&|~[A-Za-z]*\()\)( noexcept)? = default;/ {
    lines[NR] = ""
}

END {
    close_row()
    for (i = 1; i <= NR; ++i) {
        print lines[i]
    }
}
