// Shows a document in two windows, compares it with its file, and restores it after the server died.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { change, save, until } from '../drive.mjs';
import { button, changeByKey, enter, focusGraph, hasNode, mox, open, pageTest, select } from '../session.mjs';
import { serve, state, tab } from '../session.mjs';

const lacksNode = (page, id) =>
    until(page, (name) => !window.moxEditor.store.get().document.numbers.has(name), id);

async function remove(page, id) {
    await select(page, id);
    await page.evaluate(() => window.moxEditor.graph.deleteSelected(false));
}

pageTest('two windows show one document', 'tinted_texture', async ({ address, page: left }, t) => {
    const right = await open(t, address);
    await remove(left, 'tint');
    await lacksNode(right, 'tint');
    await right.keyboard.press('Control+z');
    await hasNode(left, 'tint');
    // The server reports problems later; two textures are missing next to the copy.
    for (const page of [left, right])
        await until(page, () => window.moxEditor.store.get().problems.length === 2);
    assert.deepEqual(await state(left), await state(right));
});

pageTest('the graph shows what differs from the file', 'tinted_texture', async ({ file, page }) => {
    await select(page, 'paint');
    await focusGraph(page);
    await page.keyboard.press('d');
    await tab(page, '0 differences').waitFor();
    await changeByKey(page, 'Control+Shift+ArrowLeft');
    await tab(page, '1 difference').waitFor();
    assert.equal(await page.locator('.badge.mark').count(), 0, 'a move is no mark');
    await changeByKey(page, 'Delete');
    await select(page, 'tint');
    await enter(page, 'Default Colour, red', '0.5');
    await page.locator('.card.changed[aria-label$="node tint"] .badge.mark').waitFor();
    await page.locator('#inspector .difference', { hasText: '"Default Colour" changed' }).waitFor();
    const { removedNodes, removedEdges } = await page.evaluate(() => window.moxEditor.store.get().comparison);
    assert.deepEqual(
        [removedNodes.map(({ record }) => record.id), removedEdges.map(({ tail }) => tail).sort()],
        [['paint'], ['paint', 'uv']],
    );
    await tab(page, '4 differences').click();
    await button(page, 'changed node "tint"').waitFor();

    // If the file changes too, the comparison uses its new content.
    writeFileSync(file, readFileSync(file, 'utf8').replace('1 0.9 0.8', '0.5 0.9 0.8'));
    await page.locator('[role=alert]', { hasText: /has changed on disk.*tint/s }).waitFor();
    await tab(page, '3 differences').waitFor();
    await button(page, 'Replace the file').click();
    await tab(page, '0 differences').waitFor();
    await button(page, 'Compare').click();
    assert.equal(await tab(page, '0 differences').count(), 0);
});

pageTest('a page with unsaved changes asks before it closes', 'tinted_texture', async ({ page }) => {
    await page.mouse.click(700, 300); // a page that was not used does not ask
    await change(page, () => remove(page, 'tint'));
    const [dialog] = await Promise.all([page.waitForEvent('dialog'), page.close({ runBeforeUnload: true })]);
    await Promise.all([page.waitForEvent('close'), dialog.accept()]);
});

pageTest('a server that dies loses nothing that it confirmed', 'rim_light', async (prepared, t) => {
    const { folder, file, server, page } = prepared;
    await remove(page, 'base');
    await until(page, () => window.moxEditor.store.get().unsaved);
    server.kill('SIGSTOP');
    await remove(page, 'rim');
    await page.evaluate(() => {
        window.moxEditor.places.layOut();
        window.moxEditor.changes.undo();
        window.moxEditor.changes.undo();
    });
    server.kill('SIGKILL');
    await page.getByRole('alert').getByText('The connection to mox was lost').waitFor();
    await page.getByText('cannot be downloaded: layout, undo.').waitFor();
    const download = page.waitForEvent('download');
    await button(page, 'Download unconfirmed changes (1 step for').click();
    const unconfirmed = `${folder}/unconfirmed.json`;
    await (await download).saveAs(unconfirmed);
    await select(page, 'rim');
    await page.keyboard.press('Delete');
    assert.ok(!(await page.evaluate(() => window.moxEditor.store.get().document.numbers.has('base'))));
    await page.context().close();
    page.complaints = []; // the page may have tried to connect again

    const again = await open(t, (await serve(file)).address);
    await button(again, 'Restore them').click();
    await lacksNode(again, 'base');
    await until(again, () => window.moxEditor.store.get().waiting === null);
    assert.ok(await again.evaluate(() => window.moxEditor.store.get().document.numbers.has('rim')));
    await save(again);
    execFileSync(mox, ['apply', file, unconfirmed]);
    await until(again, () =>
        window.moxEditor.store.get().fileChange?.differences.some((text) => text.includes('"rim"')),
    );
});
