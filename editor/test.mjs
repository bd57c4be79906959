// Runs the tests in test/, which are TypeScript, in Node.js: test.mjs [FILE...]

import { build } from 'esbuild';
import { mkdtempSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { spawnSync } from 'node:child_process';

const folder = new URL('test/', import.meta.url).pathname;
const names = process.argv.slice(2);
const files = readdirSync(folder).filter((name) => name.endsWith('.test.ts'));
const entryPoints = (names.length > 0 ? names : files).map((name) => folder + name);
const output = mkdtempSync(`${tmpdir()}/mox-editor-test-`);
try {
    await build({
        entryPoints,
        outdir: output,
        outExtension: { '.js': '.mjs' },
        bundle: true,
        platform: 'node',
        format: 'esm',
        logLevel: 'warning',
    });
    const tests = readdirSync(output).map((name) => `${output}/${name}`);
    process.exitCode = spawnSync(process.execPath, ['--test', ...tests], { stdio: 'inherit' }).status ?? 1;
} finally {
    rmSync(output, { recursive: true });
}
