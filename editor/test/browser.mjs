// Tests the page that `mox edit` serves in Debian's Chromium: runs the tests in browser/.
// Usage: node test/browser.mjs MOX [DIST]. MOX is the program, and DIST is the folder of a page to test instead
// of the page in the program. The files in browser/ accept the same arguments.

import { readdirSync } from 'node:fs';

const folder = new URL('browser/', import.meta.url);
for (const name of readdirSync(folder).sort()) await import(new URL(name, folder));
