f = string["format"]
print(f("%d|%5d|%-5d|%05d|%+d", 1, 2, 3, 4, 5))         @@ expect: 1|    2|3    |00004|+5
print(f("%x %X %o %u %c", 255, 255, 8, 7, 65))          @@ expect: ff FF 10 7 A
print(f("%.2f %e %g %ld %5.1lf", 3.14159, 1.5, 0.5, 9, 2.25))   @@ expect: 3.14 1.500000e+00 0.5 9   2.2
print(f("%s|%10s|%-4s|%.2s|%%", not, "right", "l", "long"))     @@ expect: not|     right|l   |lo|%
print(#f("%q", "a\"b\\c\n\t"), f("%q", "a\"b"))     @@ expect: 13\t"a\"b"
print(f("%d %d", 2.9, true), f("%.0f", 2.5))            @@ expect: 2 1\t2
print(pcall(f, "%d"))       @@ expect: false\tstring['format']: missing argument for format specifier %d
print(pcall(f, "%y", 1))    @@ expect: false\tstring['format']: unsupported specifier %y
print(pcall(f, "%5", 1))    @@ expect: false\tstring['format']: incomplete format specifier
print(#f("%10000d", 1), #f("%-20000s", "x"))           @@ expect: 10000\t20000
print(pcall(f, "%999999999d", 1))   @@ expect: false\tstring['format']: the result is too large
f("%d", "x")                @@ error: Expected a numeric value
