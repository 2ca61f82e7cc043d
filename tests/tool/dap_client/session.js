// Debugs a script as an editor would: session.js VESPER SCRIPT. Prints what it sees.
const { DebugClient } = require("@vscode/debugadapter-testsupport");

async function main(vesper, script) {
    const client = new DebugClient(vesper, "dap", "vesper");
    client.defaultTimeout = 20000;
    let printed = "";
    client.on("output", (event) => (printed += event.body.output));
    await client.start();

    await client.hitBreakpoint({ program: script }, { path: script, line: 3 });
    const frames = (await client.stackTraceRequest({ threadId: 1 })).body.stackFrames;
    console.log("stopped in " + frames.map((frame) => frame.name + ":" + frame.line).join(", "));
    const scopes = (await client.scopesRequest({ frameId: frames[0].id })).body.scopes;
    for (const scope of scopes.slice(0, 2)) {
        const reference = scope.variablesReference;
        const variables = reference ? (await client.variablesRequest({ variablesReference: reference })).body.variables : [];
        console.log(scope.name + ": " + variables.map((each) => each.name + " = " + each.value).join(", "));
    }
    const threadId = 1;
    await Promise.all([client.nextRequest({ threadId }), client.assertStoppedLocation("step", { line: 7 })]);
    const value = await client.evaluateRequest({ expression: "total * 2", context: "repl" });
    console.log("total * 2 is " + value.body.result);
    await client.setBreakpointsRequest({ source: { path: script }, breakpoints: [] });

    // The rest runs until it is paused: a loop without an end.
    await client.continueRequest({ threadId });
    const paused = client.waitForEvent("stopped");
    await new Promise((resolve) => setTimeout(resolve, 100));
    await client.pauseRequest({ threadId });
    console.log("paused by " + (await paused).body.reason);
    await Promise.all([
        client.evaluateRequest({ expression: "goesOn = false" }).then(() => client.continueRequest({ threadId })),
        client.waitForEvent("terminated"),
    ]);
    console.log("printed " + JSON.stringify(printed));
    await client.stop();
}

main(...process.argv.slice(2)).catch((error) => {
    console.log(String(error));
    process.exit(1);
});
