@@ Training, models as tables and files, generation and jobs.
ai = AI
textPath = "/tmp/kelmora_ai_text"
modelPath = "/tmp/kelmora_ai_model"

function write(path, text)
    file = io["open"](path, "w")
    file["write"](text)
    file["close"]()
end

function read(path)
    file = io["open"](path, "r")
    text = file["read"]("*a")
    file["close"]()
    return text
end

print(ai["checkJob"](0))                @@ expect: true\tfalse\tnot\tnot\tUnknown job id
write(textPath, "abcabc")
text, model = ai["generate"]("xab", textPath, not, not, not, true, modelPath, 7, not, 2)
print(text, model["ab"]["c"], model["bc"]["a"], model["ca"]["b"])   @@ expect: xabcabcabc\t2\t2\t2
print(read(modelPath))                  @@ expect: ab|c:2
                                        @@ expect: bc|a:2
                                        @@ expect: ca|b:2
loaded = ai["loadModel"](modelPath)
print(loaded["bc"]["a"])                @@ expect: 2
print(ai["generate"]("ab", not, not, true, not, not, modelPath, 2, not, 2))     @@ expect: abca\t{ab: {c: 2}, bc: {a: 2}, ca: {b: 2}}
print(ai["generate"]("ab", not, not, true, {"ab": {"!": 1}}, not, not, 2, "?", 2))   @@ expect: ab!\t{ab: {!: 1}}
text, model = ai["generate"]("Z", textPath, true, not, not, not, not, not, not, 1)
print(text, model["c"]["\n"], model["Z"], model["\n"])     @@ expect: \t1\t{a: 1}\t{Z: 1}
text, model = ai["generate"](not, textPath)
print(len(text) == 103, model["abc"])   @@ expect: true\t{a: 2}
print(ai["generateText"]("a", {"a": {"b": 1.0}, "b": {"stop": 3}}, 9.9, "stop", 1))   @@ expect: ab
print(ai["generateText"](not, {}, 9, ",,,", 1) == "")    @@ expect: true
print(ai["saveModel"]({"a": {"b": 1, "1": 2}, "7": {}}, modelPath), read(modelPath))    @@ expect: not\t7|
                                        @@ expect: a|1:2,b:1

job = ai["generateAsync"]("ab", not, not, true, {"ab": {"!": 1}}, not, not, 5, not, 2)
other = ai["generateAsync"]()
print(job, other)                       @@ expect: 1\t2
done = false
while not done
    done, ok, text, model, message = ai["checkJob"](job)
end
print(ok, text, model, message)         @@ expect: true\tab!\t{ab: {!: 1}}\tnot
print(ai["checkJob"](job))              @@ expect: true\tfalse\tnot\tnot\tUnknown job id
done = false
while not done
    done, ok, text, model, message = ai["checkJob"](other)
end
print(ok, text, model, message)         @@ expect: false\tnot\tnot\tfilePath is required for training

print(pcall(ai["generate"]))            @@ expect: false\tAI.generate: filePath is required for training
print(pcall(ai["generate"], not, not, true))    @@ expect: false\tAI.generate: filePath is required for retraining
print(pcall(ai["generate"], not, not, not, true))    @@ expect: false\tAI.generate: Either model or modelPath must be provided when skipTraining is true
print(pcall(ai["generate"], not, "/no/such"))   @@ expect: false\tAI.generate: Cannot open file: /no/such
print(pcall(ai["generate"], not, textPath, not, not, not, true, "/no/such/model"))   @@ expect: false\tAI.generate: Cannot open file for writing: /no/such/model
print(pcall(ai["generate"], 5))         @@ expect: false\tAI.generate: textInput must be a string
print(pcall(ai["generateAsync"], not, not, not, not, 5))    @@ expect: false\tAI.generateAsync: model must be a nested transition table
print(pcall(ai["generateAsync"], not, not, not, not, not, not, not, "x"))    @@ expect: false\tAI.generateAsync: genLength must be numeric
print(pcall(ai["generateText"], "a", {"a": 5}, 1, "", 1))    @@ expect: false\tAI.generateText: model must be a nested transition table
print(pcall(ai["generateText"], "a", {"a": {"b": 1.5}}, 1, "", 1))    @@ expect: false\tAI.generateText: model must be a nested transition table
print(pcall(ai["generateText"], "a", {"a": {"b": "1"}}, 1, "", 1))    @@ expect: false\tAI.generateText: model must be a nested transition table
print(pcall(ai["generateText"], "a", {}, 1, ","))       @@ expect: false\tAI.generateText: missing argument 5
print(pcall(ai["generateText"], "a", {}, 1, not, 1))    @@ expect: false\tAI.generateText: escapeCharacter must be a string
print(pcall(ai["saveModel"], {}, "/no/such/model"))     @@ expect: false\tAI.saveModel: Cannot open file for writing: /no/such/model
print(pcall(ai["saveModel"], not, modelPath))           @@ expect: false\tAI.saveModel: model must be a nested transition table
print(pcall(ai["loadModel"], "/no/such"))               @@ expect: false\tAI.loadModel: Cannot open file: /no/such
write(modelPath, "ab|c:half")
print(pcall(ai["loadModel"], modelPath))                @@ expect: false\tAI.loadModel: Invalid count in model: half
print(pcall(ai["checkJob"]))                            @@ expect: false\tAI.checkJob: missing argument 1
print(pcall(ai["checkJob"], "1"))                       @@ expect: false\tAI.checkJob: jobId must be numeric
os["remove"](textPath)
os["remove"](modelPath)
ai["defaultdict"](1)                                    @@ error: AI.defaultdict: metatable-backed defaultdict is not supported in VesperScript
