# Gives the docstring before a row of declarations to each of them.
#
# A row starts with a `///` docstring and ends before the next blank line, docstring, destructor, label or closing
# brace. The copies stand in front of the declarations, in their lines, so that line numbers stay. Defaulted copy
# operations outside a row have nothing to tell and are left out.

function indentation(line) { match(line, /^ */); return RLENGTH }

{ line[NR] = $0 }

/^ *\/\/\/([^<]|$)/ {
    text = (is_docstring ? text : "") " " substr($0, indentation($0) + 4)
    depth = indentation($0)
    declarations = 0
    is_docstring = in_row = is_between = 1
    in_body = 0
    next
}

{ is_docstring = 0 }

in_row && indentation($0) == depth && /^ *[{}]/ {
    in_body = /{$/
}

in_row && !in_body {
    is_end = /^ *$/ || indentation($0) < depth || /^ *(class|struct|enum|namespace) [^;]*$/
    if (is_end || (declarations > 0 && /^ *(virtual )?~/)) {
        in_row = 0
    } else if (is_between && ++declarations > 1) {
        line[NR] = "/**" text " */ " $0
    }
    is_between = /[;}]( *\/\/.*)?$/
}

!in_row && /(const&|&&)\)( noexcept)? = default;/ {
    line[NR] = ""
}

END {
    for (i = 1; i <= NR; ++i) {
        print line[i]
    }
}
