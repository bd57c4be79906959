// Tests the page that `mox edit` serves in Debian's Chromium: runs the files in browser/.
// Usage: node test/browser.mjs MOX [DIST]. MOX is the program, and DIST is the folder of a page to test instead
// of the page in the program. To run one file only, pass its path to node instead.

import { readdirSync } from 'node:fs';

for (const name of readdirSync(new URL('browser/', import.meta.url)).sort())
    await import(`./browser/${name}`);
