@@ Tables of translations in the po form. An entry has context, id, str, fuzzy and the comments before it.

novelPoEscapes = {n = "\n", t = "\t", r = "\r"}
novelPoFields = {msgctxt = "context", msgid = "id", msgstr = "str"}

@@ The text between the first and the last quote of a line; nothing where they are missing.
function novelPoQuoted(line)
    local inner = string["match"](line, "re:^[^\"]*\"((?:[^\"\\\\]|\\\\.)*)\"[ \t\r]*$")
    if inner == not
        return not
    end
    local out = ""
    local at = 1
    while true
        local slash = string["find"](inner, "\\", at, true)
        if slash == not
            return out + string["sub"](inner, at)
        end
        local letter = inner[slash + 1]
        out += string["sub"](inner, at, slash - 1) + (novelPoEscapes[letter] or letter)
        at = slash + 2
    end
end

function novelPoFresh()
    return {context = "", id = not, str = "", fuzzy = false, old = not, notes = []}
end

@@ The entries of a table, and a list of the lines that are no part of the form, as "line 3: what it says".
@@ What was given up (lines with #~) is read with `given = true`.
function novelReadPo(text)
    local entries = []
    local faults = []
    local entry = novelPoFresh()
    local field = not
    for number, line in ipairs(novelSplit(novelReplace(text, "\r", ""), "\n"))
        local rest = line
        local given = string["sub"](line, 1, 2) == "#~"
        if given
            rest = string["gsub"](string["sub"](line, 3), "re:^ +", "")
        end
        local word = string["match"](rest, "re:^(msgctxt|msgid|msgstr)[ \"]")
        if (word == "msgctxt" or word == "msgid" and field == "str" or rest == "" or rest[1] == "#") and field == "str"
            push(entries, entry)
            entry = novelPoFresh()
            field = not
        end
        if word != not and novelPoQuoted(rest) != not
            field = novelPoFields[word]
            entry[field] = novelPoQuoted(rest)
            entry["given"] = given
        elseif rest[1] == "\"" and field != not and novelPoQuoted(rest) != not
            entry[field] += novelPoQuoted(rest)
        elseif string["sub"](rest, 1, 2) == "#,"
            entry["fuzzy"] = string["find"](rest, "fuzzy", 1, true) != not
        elseif string["sub"](rest, 1, 8) == "#| msgid" and novelPoQuoted(rest) != not
            entry["old"] = novelPoQuoted(rest)
        elseif rest[1] == "#"
            push(entry["notes"], rest)
        elseif rest != ""
            push(faults, "line " + number + ": " + string["sub"](rest, 1, 40))
        end
    end
    if field == "str"
        push(entries, entry)
    elseif field != not
        push(faults, "the last entry has no translation line")
    end
    return entries, faults
end
