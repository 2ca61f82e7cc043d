--[==[ levels do not exist: this is a comment to the end of its line
--[[ a long
comment ]] print("behind it")           -- expect: behind it
print(0x10, 0XfF, 1.5, 1..2)            -- expect: 16\t255\t1.5\t12
print("a\0b" == "a\0b", #"a\0b", 'q\'s') -- expect: true\t3\tq's
print("tab\tq\q\"")                     -- expect: tab\tqq"
print(#[[
two\n]])                                -- expect: 6
repeat_ = 1 goto = 2 until_ = goto
repeat = until_ print(repeat)           -- expect: 2
print(9223372036854775807, 9223372036854775808, 0xFFFFFFFFFFFFFFFF)
-- expect: 9223372036854775807\t9.2233720368548e+18\t-1
print(3.0, 100000000000000.5)           -- expect: 3\t1e+14
; ; print("semicolons");                -- expect: semicolons
print("two \
lines")                                 -- expect: two 
                                        -- expect: lines
