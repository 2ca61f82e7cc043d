from functools import cmp_to_key


def numbers(amount):
    result = []
    seed = 42
    for i in range(amount):
        seed = (seed * 421 + 54773) % 259200
        result.append(seed)
    return result


def quicksort(items, low, high):
    while low < high:
        pivot = items[(low + high) // 2]
        i = low
        j = high
        while i <= j:
            while items[i] < pivot:
                i += 1
            while items[j] > pivot:
                j -= 1
            if i <= j:
                items[i], items[j] = items[j], items[i]
                i += 1
                j -= 1
        quicksort(items, low, j)
        low = i


def descending(a, b):
    return b - a


values = numbers(100000)
quicksort(values, 0, len(values) - 1)
again = numbers(60000)
again.sort(key=cmp_to_key(descending))
print(values[0], values[49999], values[99999], again[0], again[29999], sep="\t")
