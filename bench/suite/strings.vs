function build(words)
    local text = ""
    for i = 1, words
        text += "word" + i
        if i % 10 == 0
            text += "\n"
        else
            text += " "
        end
    end
    return text
end
function capitals(text)
    local upper = string["upper"]
    local sub = string["sub"]
    local parts = []
    for i = 1, #text, 7
        push(parts, upper(sub(text, i, i + 2)))
    end
    return table["concat"](parts, "")
end
text = build(200000)
result = capitals(text)
print(#text, #result, string["sub"](result, 1, 12))
