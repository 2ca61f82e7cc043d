local function build(words)
    local text = ""
    for i = 1, words do
        text = text .. "word" .. i
        if i % 10 == 0 then
            text = text .. "\n"
        else
            text = text .. " "
        end
    end
    return text
end
local function capitals(text)
    local upper, sub = string.upper, string.sub
    local parts = {}
    for i = 1, #text, 7 do
        parts[#parts + 1] = upper(sub(text, i, i + 2))
    end
    return table.concat(parts, "")
end
local text = build(200000)
local result = capitals(text)
print(#text, #result, string.sub(result, 1, 12))
