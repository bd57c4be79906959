// Uses the inspector, the drawers and the lists next to the graph.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { until } from '../drive.mjs';
import { button, changeByKey, enter, laidOutTest, layOut, pageTest, prepare, select } from '../session.mjs';
import { tab } from '../session.mjs';

const adjusting =
    '<material version="1"><nodes><node id="adjust" type="ColourAdjust" version="0"/></nodes></material>';

pageTest('a typed number may be outside the range of its field', adjusting, async ({ page }) => {
    await select(page, 'adjust');
    const field = page.getByLabel('Default Amount', { exact: true });
    await enter(page, 'Default Amount', '9');
    assert.equal(await field.inputValue(), '9');
    await changeByKey(page, 'ArrowUp');
    assert.equal(await field.inputValue(), '4');
    await field.fill('0,5');
    await page.keyboard.press('Enter');
    await until(page, () => window.moxEditor.store.get().message.startsWith('"0,5" is neither'));
    assert.equal(await field.inputValue(), '4');
});

laidOutTest('lines of programs and nodes find each other', 'tinted_texture', async ({ page }) => {
    await tab(page, 'Programs').click();
    await page.locator('.cm-line').nth(3).waitFor();
    const language = page.getByLabel('Language');
    const targets = await language.locator('option').allTextContents();
    assert.ok(targets.includes('wgsl'), `${targets}`);
    const lit = page.locator('.card.lit');
    for (const target of targets) {
        await language.selectOption(target);
        await until(page, () => document.querySelector('.cm-content')?.textContent.length > 100);
        if (target === 'spirv') continue;
        await select(page, 'tinted');
        await until(page, () => document.querySelectorAll('.cm-line.marked').length > 3);
        const first = await page.locator('.cm-line.marked').first().textContent();
        assert.match(first, /"tinted"/, target);
        await page.evaluate(() => window.moxEditor.selection.select([]));
        await until(page, () => document.querySelectorAll('.cm-line.marked').length === 0);
        await page.locator('.cm-line', { hasText: first.trim() }).first().click();
        await lit.waitFor();
        assert.match(await lit.getAttribute('aria-label'), /node tinted$/);
    }
});

test('markup in names is shown as text', async (t) => {
    const markup = '<img src=x onerror=alert(1)>';
    const escaped = markup.replaceAll('<', '&lt;');
    const property = (name) => `<property name="${name}" kind="string" value="${escaped}"/>`;
    const annotation = (kind) =>
        `<annotation id="${kind}" kind="${kind}" text="${escaped}" x="0" y="0" width="300" height="200"/>`;
    const material = `<material version="2"><description name="${escaped}"/><nodes>
        <node id="${escaped}" type="CoreConstant" version="0">${property('Name')}${property('Description')}</node>
        <node id="lost" type="${escaped}" version="0"/>
        <node id="surface" type="Surface" version="0"/></nodes>
        <edges><edge tail="${escaped}" tailPort="read" head="surface" headPort="in_colour"/></edges>
        <annotations>${annotation('frame')}${annotation('note')}</annotations></material>`;
    const { page } = await prepare(t, material, { name: markup });
    await layOut(page);
    await button(page, 'Compare').click();
    await select(page, markup);
    await page.evaluate((id) => window.moxEditor.pinned.pin({ node: id, port: 'read' }), markup);
    for (const name of ['problems', 'parameters', 'programs', 'differences'])
        await page.locator(`#tab-${name}`).click();
    await page.locator('.difference').first().waitFor();
    await page.keyboard.press('Control+f');
    await page.locator('.palette li', { hasText: markup }).first().waitFor();
    assert.ok((await page.title()).includes(markup));
    assert.equal(await page.locator('img').count(), 0);
});

laidOutTest('axe finds nothing serious, in light and dark', 'tinted_texture', async ({ page }) => {
    await select(page, 'tint');
    await page.evaluate(() => window.moxEditor.pinned.pin({ node: 'tint', port: 'read' }));
    const axe = new URL('../../node_modules/axe-core/axe.min.js', import.meta.url);
    await page.evaluate(readFileSync(axe, 'utf8'));
    const views = [
        async () => {},
        () => tab(page, 'Programs').click(),
        () => tab(page, 'Parameters').click(),
        () => button(page, 'Find').click(),
        () => page.keyboard.press('Escape').then(() => button(page, 'Add').click()),
        async () => {
            await page.locator('.palette input').fill('note');
            await changeByKey(page, 'Enter');
        },
        () => page.keyboard.press('Escape').then(() => button(page, 'Keys').click()),
    ];
    const found = new Set();
    for (const view of views) {
        await view();
        for (const colorScheme of ['light', 'dark']) {
            await page.emulateMedia({ colorScheme });
            const { violations } = await page.evaluate(() => window.axe.run());
            for (const { id, impact, nodes } of violations)
                if (impact === 'serious' || impact === 'critical')
                    for (const node of nodes) found.add(`${colorScheme} ${id}: ${node.html.slice(0, 200)}`);
        }
    }
    assert.deepEqual([...found], []);
});
