print(("key = value"):match("^(%w+)%s*=%s*(%w+)$"))    -- expect: key\tvalue
print(("hello"):find("l"), ("hello"):find("l", -1), ("a.b"):find(".", 1, true)) -- expect: 3\tnil\t2\t2
print(("hello"):find("xyz"), ("hello"):find(""), ("hello"):find("", 10)) -- expect: nil\t1\tnil
print(("a-b"):find("-"), ("abc"):find("b()"))          -- expect: 2\t2\t2\t3
print(("[[x]]"):match("%[(.-)%]"), ("x^y$z"):match("[%^$]+"), ("a]b"):match("[]]")) -- expect: [x\t^\t]
print(("line1\nline2"):match("1(.)l") == "\n", ("äb"):match("^[^a-z]+"))           -- expect: true\tä
print(("aaa"):match("a-b") , ("aaab"):match("a-b"), ("ab"):match("a?b?c?"))        -- expect: nil\taaab\tab
print(("x = 'it' .. \"is\""):match("(['\"])(.-)%1"))   -- expect: '\tit
print(("  trim  "):match("^%s*(.-)%s*$") .. "|")       -- expect: trim|
print(("abc"):gsub("%w", "%0%0"))                      -- expect: aabbcc\t3
print(("hello world"):gsub("o", "0", 1))               -- expect: hell0 world\t1
print(("abc"):gsub("", "-"), ("abc"):gsub("%w*", "x")) -- expect: -a-b-c-\tx\t1
print(("$name is $age"):gsub("%$(%w+)", {name = "Bo", age = 7}))   -- expect: Bo is 7\t2
print(("a b c"):gsub("%w", function(w) if w ~= "b" then return w:upper() end end)) -- expect: A b C\t3
print(("x y"):gsub("(%w) (%w)", "%2 %1"), ("50%"):gsub("%%", "%% of")) -- expect: y x\t50% of\t1
print(("abc"):gsub("^a", "x"), ("aaa"):gsub("^a", "x"))            -- expect: xbc\txaa\t1
for key, value in ("a=1, b=2"):gmatch("(%w+)=(%w+)") do print(key, value) end
-- expect: a\t1
-- expect: b\t2
local places = ""
for place in ("a,b,c"):gmatch("(),") do places = places .. place .. " " end
print(places)                                          -- expect: 2 4 
print(("THE (quick) fox"):find("%((%a+)%)"))           -- expect: 5\t11\tquick
print(("f(a,b)"):match("%((.*)%)"), ("0x1F"):match("^0[xX](%x+)$"), ("a*"):match("(a)*")) -- expect: a,b\t1F\ta
print(("a\0b"):match("%z?\0(.)"), ("tab\there"):match("%c") == "\t") -- expect: b\ttrue
for _, call in ipairs({
    function() return ("x"):match("(") end, function() return ("x"):match("%") end,
    function() return ("x"):match("[a") end, function() return ("x"):match(")") end,
    function() return ("x"):match("%b()") end, function() return ("x"):match("%1") end,
    function() return ("x"):gsub("x", "%2") end, function() return ("x"):gsub("x", {x = {}}) end,
    function() return ("x"):gsub("x", nil) end,
    function() return ("a"):rep(5000):match(("a-"):rep(12) .. "b") end,
}) do
    local _, message = pcall(call)
    print((message:gsub("^patterns.lua:%d+: ", "")))
end
-- expect: gsub: invalid regex pattern '('
-- expect: gsub: invalid regex pattern '%'
-- expect: gsub: invalid regex pattern '[a'
-- expect: gsub: invalid regex pattern ')'
-- expect: gsub: invalid regex pattern '%b()'
-- expect: gsub: invalid regex pattern '%1'
-- expect: string.gsub: invalid capture index %2 in replacement string
-- expect: string.gsub: the replacement is a table value
-- expect: string.gsub expects a string, table or function as argument 3
-- expect: the pattern is too complex for this subject: too many steps
