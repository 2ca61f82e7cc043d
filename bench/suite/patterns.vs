function logLine(i)
    return "2026-11-" + (10 + i % 20) + " user" + i + "@example.org took " + i * 7 % 1000 + " ms, code " + i % 5
end
find = string["find"]
match = string["match"]
gsub = string["gsub"]
total = 0
codes = 0
words = 0
digits = 0
for i = 1, 30000
    line = logLine(i)
    name, host = match(line, "(%w+)@(%w+)")
    total += toNumber(match(line, "took (%d+) ms"))
    if find(line, "code [13]")
        codes += 1
    end
    words += #string["gmatch"](line, "%a+")
    digits += #gsub(line, "%d", "##")
end
print(total, codes, words, digits, name, host)
