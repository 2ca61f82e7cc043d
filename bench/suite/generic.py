def fill(size):
    stock = {}
    order = []
    for i in range(1, size + 1):
        stock["part" + str(i)] = i % 100
        order.append(i * 3 % size)
    return stock, order


def tally(stock, order):
    total = 0
    longest = 0
    for name, amount in stock.items():
        total += amount
        if len(name) > longest:
            longest = len(name)
    for position, item in enumerate(order, 1):
        total += position % 7 * (item % 5)
    for item in order:
        total -= item % 3
    return total + longest


stock, order = fill(20000)
result = 0
for round in range(20):
    result += tally(stock, order)
print(result)
