if vesperOnLinux
    for i, row in ipairs(VESPER_TMP1)
        row[3] *= 0.75
    end
end

@@ Milliseconds a frame until a row is found, a rate from there on.
threads = 6
if VESPERBOOT_ENABLED
    threads = vesperBootHardwareThreads
end
maxFramerate = 1000 / 24
VESPER_FRAMERATE = 1000 / 24
VESPER_PROCESSOR = {VESPER_PROCESSOR_NAME, threads, 24}
if not VESPERBOOT_ENABLED
    for i, row in ipairs(VESPER_TMP1)
        if vesperProcessorNameMatches(VESPER_PROCESSOR_NAME, row[1])
            threads = row[2]
            maxFramerate = row[3]
            VESPER_FRAMERATE = row[3]
            VESPER_PROCESSOR = row
        end
    end
end
Plush["threads"](threads)
