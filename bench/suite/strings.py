def build(words):
    text = ""
    for i in range(1, words + 1):
        text += "word" + str(i)
        if i % 10 == 0:
            text += "\n"
        else:
            text += " "
    return text


def capitals(text):
    parts = []
    for i in range(0, len(text), 7):
        parts.append(text[i:i + 3].upper())
    return "".join(parts)


text = build(200000)
result = capitals(text)
print(len(text), len(result), result[:12], sep="\t")
