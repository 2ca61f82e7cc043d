def lerp(a, b, t):
    return a + (b - a) * t


def manhattan(x, y):
    return x * x + y * y


def checked(n):
    if n < 0:
        raise ValueError("negative")
    return n + 1


def run(rounds):
    total = 0
    i = 0
    while i < rounds:
        total = total + lerp(i, 100, 3) - manhattan(i % 7, 3) + checked(i)
        i = i + 1
    return total


print(run(1000000))
