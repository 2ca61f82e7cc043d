m = vesperProcessorNameMatches
print(m("Arm Cortex-A72 r0p3", "Arm Cortex-A72"), m("Arm Cortex-A72X", "Arm Cortex-A72"), m("Arm", "Arm"), m(1, "1"), m(0, 0))   @@ expect: true\tfalse\ttrue\tfalse\ttrue
print(#VESPER_TMP1, VESPER_TMP1[1][1], VESPER_TMP1[4][1], VESPER_TMP1[353][1])       @@ expect: 353\tPowerPC G3\tUnknown Intel\tIBM A2
function row(name)
    for i, entry in ipairs(VESPER_TMP1)
        if entry[1] == name
            return entry[2] + "/" + entry[3]
        end
    end
end
factor = 1
if string["find"](VESPER_OS_PLATFORM, "Linux")
    factor = 0.75
end
print(row("Apple M1") == 8 + "/" + 60 * factor, row("IBM POWER10") == 4 + "/" + 24 * factor)       @@ expect: true\ttrue
print(row("Intel(R) Xeon(R) W-3275M CPU @ 2.50GHz") == 28 + "/" + 68 * factor)                     @@ expect: true
print(vesperNormaliseAppleName("Apple M3 Pro"), vesperNormaliseAppleName("x12"), vesperNormaliseAppleName("?"))   @@ expect: Apple M3 Pro\tApple A12Z Bionic\tApple processor
print(#VESPER_PROCESSOR == 3, VESPER_PROCESSOR[1] == VESPER_PROCESSOR_NAME, threads >= 1, maxFramerate == VESPER_FRAMERATE)      @@ expect: true\ttrue\ttrue\ttrue
