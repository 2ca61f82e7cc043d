def count(rounds):
    seed = 12345
    counts = {}
    for i in range(rounds):
        seed = (seed * 421 + 54773) % 259200
        key = "item" + str(seed % 1000)
        counts[key] = counts.get(key, 0) + 1
    best = ""
    most = 0
    for key, value in sorted(counts.items()):
        if value > most:
            best = key
            most = value
    return best + " " + str(most) + " " + str(len(counts))


print(count(400000))
