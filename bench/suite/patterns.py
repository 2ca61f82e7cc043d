import re

MAIL = re.compile(r"([A-Za-z0-9_]+)@([A-Za-z0-9_]+)")
TOOK = re.compile(r"took ([0-9]+) ms")
CODE = re.compile(r"code [13]")
WORD = re.compile(r"[A-Za-z]+")
DIGIT = re.compile(r"[0-9]")


def log_line(i):
    return "2026-11-" + str(10 + i % 20) + " user" + str(i) + "@example.org took " + str(i * 7 % 1000) + " ms, code " + str(i % 5)


total = codes = words = digits = 0
for i in range(1, 30001):
    line = log_line(i)
    name, host = MAIL.search(line).groups()
    total += int(TOOK.search(line).group(1))
    if CODE.search(line):
        codes += 1
    words += len(WORD.findall(line))
    digits += len(DIGIT.sub("##", line))
print(total, codes, words, digits, name, host, sep="\t")
