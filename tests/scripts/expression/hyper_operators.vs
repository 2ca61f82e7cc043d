print(3 <- 2, 2 <- 3, 0 <- 5, 1 <- 7, 4 <- 1)   @@ expect: 16\t27\t1\t7\t1
print(2 -> 3, 3 -> 2, 2 -> 0, 5 -> 1, 1 -> 99)  @@ expect: 65536\t7625597517824.000000\t1\t5\t1
print(2 <- 0, 3 <- 0, 2 -> 2.0)                 @@ expect: 1\t0\t4.000000
print(pcall(load("return 1.5 <- 2")))   @@ expect: false\ttetration height must be an integer
print(pcall(load("return (-1) <- 2")))    @@ expect: false\ttetration height must be a non-negative integer
print(pcall(load("return 9 <- 9")))     @@ expect: false\tInvalid tetration result
print(pcall(load("return 'a' <- 2")))   @@ expect: false\ttetration requires numeric operands
print(pcall(load("return 2 -> not")))   @@ expect: false\tpentation requires numeric operands
print(pcall(load("return 2 -> 0.5")))   @@ expect: false\tpentation count must be an integer
print(5 -> 4)                           @@ error: Invalid tetration result
