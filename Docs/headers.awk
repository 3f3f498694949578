# How Doxygen reads the headers. They say a thing once; each declaration of the API's pages needs it at its own place.
#
#   - A comment holds for all declarations up to the next comment or empty line: a getter's for its setter.
#   - A comment at a line's end holds for every name that the line declares.
#   - What every class has, its class object, its constructor, comparison, the test for nil, is told here.
#
# No line is added or taken away, so that warnings name the right one.

function begins_comment(text) { return text ~ /^[ \t]*\/\/\/([^<]|$)/ }

# Braces of code, not of initialisers or bodies that close on their line.
function depth_change(text, opened, closed) {
    sub(/\/\/.*/, "", text)
    opened = gsub(/[{(]/, "", text)
    closed = gsub(/[})]/, "", text)
    return opened - closed
}

function told(text) {
    if (text ~ /^extern const QVFilterClass /) {
        name = text
        sub(/^extern const QVFilterClass /, "", name)
        sub(/Class;.*/, "", name)
        return "The class object of " name "."
    }
    if (text ~ /^explicit [A-Za-z0-9_]+\((const QVFilterClass& filterClass.*)?$/) return "An instance of the class that the record describes, with its defaults."
    if (text ~ /explicit operator bool\(\) const/) return "False for nil."
    if (text ~ /operator==\(/) return "Whether all members are equal."
    return ""
}

# `double x = 0, y = 0;` as one declaration each, all with the same comment.
function apart(fields, say, said_first, count, parts, first, type, text, i) {
    sub(/;[ \t]*$/, "", fields)
    count = split(fields, parts, /, /)
    first = parts[1]
    sub(/ =.*/, "", first)
    type = first
    sub(/[^ ]+$/, "", type)
    text = (said_first ? "" : say) parts[1] ";"
    for (i = 2; i <= count; i++) text = text " " say type parts[i] ";"
    return text
}

{
    line = $0
    if (begins_comment(line)) {
        if (!in_comment) comment = ""
        text = line
        sub(/^[ \t]*\/\/\/ ?/, "", text)
        comment = comment (comment == "" ? "" : " ") text
        in_comment = 1
        print line
        next
    }
    documented = in_comment
    in_comment = 0
    # A blank line, a scope or a directive ends what a comment holds for.
    if (open <= 0 && line ~ /^[ \t]*$|^[ \t]*(public|private|protected):|^[ \t]*[#}]/) comment = ""
    starts = open <= 0 && line ~ /^[ \t]*[A-Za-z~]/ && line !~ /^[ \t]*(public|private|protected|namespace|using)[ :]/
    if (starts && (line ~ /&&\)( noexcept)?;/ || line ~ /= delete;/ || line ~ /~[A-Za-z]+\(/)) {
        # How an object is copied, moved and destroyed goes without saying.
        hidden = 1
    }
    if (hidden) {
        if (line ~ /;[ \t]*$|}[ \t]*$/) hidden = 0
        print ""
        next
    }
    if (starts) {
        trailing = ""
        if (match(line, /[ \t]*\/\/\/< ?/)) {
            trailing = substr(line, RSTART + RLENGTH)
            line = substr(line, 1, RSTART - 1)
        }
        indent = line
        sub(/[^ \t].*/, "", indent)
        body = substr(line, length(indent) + 1)
        say = ""
        if (!documented) {
            say = trailing != "" ? trailing : told(body)
            if (say == "" && comment != "" && body !~ /^(class|struct|enum|template)[ <]/) say = comment
        } else if (trailing != "") {
            line = line "  ///< " trailing
            body = body "  ///< " trailing
        }
        if (say == "" && documented) say = comment
        several = body ~ /^[A-Za-z_0-9:<> ]+ [A-Za-z_0-9]+( = [^,;(]*)?(, [A-Za-z_0-9]+( = [^,;(]*)?)+;$/
        if (several) line = indent apart(body, "/** " say " */ ", documented)
        else if (say != "" && !documented) line = indent "/** " say " */ " body
    }
    scope = line ~ /(namespace|class|struct|union)[^;(]*\{[ \t]*$|extern "C"/
    if (!scope) open += depth_change($0)
    if (open < 0) open = 0
    # A class begins with nothing told yet.
    if (scope) comment = ""
    print line
}
