s = "one
     two"
print(s)                        @@ expect: one two
print("tab\tend", "a\qb", 'q"', "@@ no comment")    @@ expect: tab\tend\taqb\tq"\t@@ no comment
n = (1 +
    2 +
    3)
print(n)                        @@ expect: 6
