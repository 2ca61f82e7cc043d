print(#vesperRuneTable())                           @@ expect: 165
print(Vesper["translateRunes"]("The eel knew") != Vesper["translateRunes"]("the Eel new"))    @@ expect: true
print(Vesper["translateRunes"]("THE eel") == Vesper["translateRunes"]("the EEL"), Vesper["translateRunes"](" "))    @@ expect: true\t*
startTag = "<r>"
endTag = "</r>"
print(Vesper["processRunes"]("a <r> </r> b <r>  </r>!"), Vesper["processRunes"]("no <r>end"))  @@ expect: a * b **!\tno <r>end
print(Vesper["processAnglish"]("same"), Vesper["processGender"](), Vesper["processGender"]("x"))    @@ expect: same\tpages = {}\tx
file = io["open"](Vesper["getPath"]() + "../Libraries/anglish", "w")
file["write"]("wordbook = [[\"people\", \"folk\"], [\"question\", \"ask\"]]")
file["close"]()
registerAnglish()
print(Vesper["translateAnglish"]("people question"), Vesper["processAnglish"]("people <r>people</r>"))   @@ expect: folk ask\tpeople folk
file = io["open"](Vesper["getPath"]() + "../Libraries/gender", "w")
file["write"]("genderbook = [[\"Mr\", \"Ms\"]]")
file["close"]()
function Vesper["capture"]()
    return "Maria"
end
registerGenderEngine()
print(VESPER_FEMALE != VESPER_WINDOWS_ENABLED, Vesper["processGender"]("Mr Smith"))   @@ expect: true\tMs Smith
os["remove"](Vesper["getPath"]() + "../Libraries/anglish")
ok, why = pcall(registerAnglish)
print(ok, string["sub"](why, 1, 28))                        @@ expect: false\tFailed to open script file: 
