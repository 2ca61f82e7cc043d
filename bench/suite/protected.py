def check(value):
    if value % 4 == 0:
        raise ValueError("refused " + str(value))
    return value * 2


def run(rounds):
    total = 0
    refused = 0
    for i in range(1, rounds + 1):
        try:
            total += check(i)
        except ValueError as error:
            refused += len(str(error))
    return str((total + 2**31) % 2**32 - 2**31) + " " + str(refused)


print(run(30000), run(300001), sep="\t")
