// Builds dist/index.html, dist/app.js and dist/app.css.

import { build } from 'esbuild';
import { copyFileSync, mkdirSync } from 'node:fs';

const folder = new URL('.', import.meta.url).pathname;
const output = process.argv[2] ?? `${folder}dist`;
mkdirSync(output, { recursive: true });
await build({
    entryPoints: { app: `${folder}src/main.tsx` },
    outdir: output,
    bundle: true,
    minify: true,
    format: 'esm',
    target: 'es2022',
    jsx: 'automatic',
    define: { 'process.env.NODE_ENV': '"production"' },
    legalComments: 'none',
    logLevel: 'warning',
});
copyFileSync(`${folder}src/index.html`, `${output}/index.html`);
