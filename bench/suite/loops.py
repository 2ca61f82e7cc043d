def run(rounds):
    total = 0
    outer = 0
    while outer < rounds:
        for inner in range(1, 1001):
            if inner % 3 == 0 and outer % 2 == 0:
                total += inner
            else:
                total = total - outer
        outer += 1
    return total


result = run(3000)
print((result + 2**31) % 2**32 - 2**31)
