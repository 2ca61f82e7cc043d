def sieve(limit):
    composite = []
    for i in range(limit + 1):
        composite.append(False)
    count = 0
    for i in range(2, limit + 1):
        if not composite[i]:
            count += 1
            multiple = i + i
            while multiple <= limit:
                composite[multiple] = True
                multiple += i
    return count


print(sieve(1000000))
