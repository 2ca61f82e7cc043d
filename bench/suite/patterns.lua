local function logLine(i)
    return "2026-11-" .. (10 + i % 20) .. " user" .. i .. "@example.org took " .. i * 7 % 1000 .. " ms, code " .. i % 5
end
local find, match, gsub, gmatch = string.find, string.match, string.gsub, string.gmatch
local total, codes, words, digits = 0, 0, 0, 0
local name, host
for i = 1, 30000 do
    local line = logLine(i)
    name, host = match(line, "(%w+)@(%w+)")
    total = total + tonumber(match(line, "took (%d+) ms"))
    if find(line, "code [13]") then
        codes = codes + 1
    end
    for word in gmatch(line, "%a+") do
        words = words + 1
    end
    digits = digits + #gsub(line, "%d", "##")
end
print(total, codes, words, digits, name, host)
