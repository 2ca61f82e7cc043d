print(7 \ 2, -7 \ 2, 7.9 \ 2, -7 % 3, 7 / 2)   @@ expect: 3\t-3\t3\t-1\t3.500000
x = 1 \ 0       @@ error: Division by zero
