// Compares the surface with previews, and observes when it is compiled and drawn.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { test } from 'node:test';
import { drop, middle, settle, until } from '../drive.mjs';
import { button, dragBy, examples, laidOutTest, mox, pageTest, prepare, select } from '../session.mjs';

/** The mean colour in the middle of the image. */
const picture = (page) =>
    page.evaluate(async () => {
        await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
        const context = new OffscreenCanvas(64, 64).getContext('2d');
        context.drawImage(document.querySelector('#surface canvas'), 96, 96, 64, 64, 0, 0, 64, 64);
        const { data } = context.getImageData(0, 0, 64, 64);
        return [0, 1, 2].map((c) => data.filter((_, i) => i % 4 === c).reduce((s, v) => s + v, 0) / 4096);
    });

laidOutTest('a value reaches the picture without compiling', 'rim_light', async ({ page }) => {
    await until(page, () => window.moxPicture?.renderer.compileCount === 1);
    const before = await picture(page);
    const values = await page.evaluate(() => JSON.stringify(window.moxEditor.store.get().parameters));
    await select(page, 'base');
    await dragBy(page, await middle(page.getByLabel('Default Colour, red')), [80, 0]);
    await until(page, () => window.moxEditor.store.get().sentValues.size === 0); // a compilation has confirmed the values
    const after = await picture(page);
    assert.ok(after[0] > before[0] + 20, `${before} and ${after}`);
    assert.equal(await page.evaluate(() => window.moxPicture.renderer.compileCount), 1);
    await page.keyboard.press('Escape');
    await button(page, 'Undo').click();
    await until(page, (old) => JSON.stringify(window.moxEditor.store.get().parameters) === old, values);
    const undone = await picture(page);
    undone.forEach((value, i) => assert.ok(Math.abs(value - before[i]) < 1));
});

pageTest('a move during a compilation does not delay its result', 'rim_light', async ({ page }) => {
    await settle(page);
    const before = await page.evaluate(() => {
        const editor = window.moxEditor;
        editor.selection.selectIds(['base']);
        const { request } = editor.server.connection;
        editor.server.connection.request = function (message, bytes) {
            const reply = request.call(this, message, bytes);
            if (message.do === 'compile') {
                editor.server.connection.request = request;
                editor.places.nudge({ x: 1, y: 0 });
            }
            return reply;
        };
        const value = { node: 'rimGlow', name: 'Function', kind: 'enum', value: 'Addition' };
        editor.values.setProperties([value]);
        return editor.store.get().programs.fragment;
    });
    await until(page, (text) => window.moxEditor.store.get().programs.fragment !== text, before);
});

/**
 * How the surface differs from an image file, or, if there is none, from the preview of a sphere: the mean out of
 * 255, and the share of components that are far apart.
 */
const difference = (page, file) =>
    page.evaluate(
        async (data) => {
            const pixelsOf = (from) => {
                const context = new OffscreenCanvas(256, 256).getContext('2d');
                context.drawImage(from, 0, 0);
                return context.getImageData(0, 0, 256, 256).data;
            };
            let wanted;
            if (data) {
                wanted = pixelsOf(await createImageBitmap(new Blob([new Uint8Array(data)])));
            } else {
                const message = { do: 'picture', mesh: 'sphere', frame: 0, width: 256, height: 256 };
                const { answer, bytes } = await window.moxEditor.server.connection.request(message);
                if (!bytes) return { failure: answer };
                wanted = bytes;
                window.moxPicture.view.seconds = 0;
                window.moxPicture.renderer.draw(window.moxPicture.view);
            }
            const apart = [...pixelsOf(document.querySelector('#surface canvas'))]
                .map((value, i) => Math.abs(value - wanted[i]))
                .filter((_, i) => i % 4 < 3);
            return {
                mean: apart.reduce((sum, value) => sum + value, 0) / apart.length,
                far: apart.filter((value) => value > 8).length / apart.length,
            };
        },
        file && [...readFileSync(file)],
    );

/** A material that emits a cube map or a volume; flames.png serves as a panorama and as two slices in a row. */
const readsTexture = (read, source, input) => `<material version="1"><nodes>
    <node id="place" type="${source}" version="0"/>
    <node id="texture" type="TextureRead" version="0">
        <property name="Name" kind="string" value="light"/>
        <property name="Read" kind="enum" value="${read}"/></node>
    <node id="surface" type="Surface" version="0"/></nodes>
    <edges><edge tail="place" tailPort="read" head="texture" headPort="${input}"/>
        <edge tail="texture" tailPort="out_colour" head="surface" headPort="in_emission"/></edges>
    <bindings><binding stream="texture" tag="light" default="textures/flames.png"/></bindings></material>`;

const names = readdirSync(examples).filter((name) => name.endsWith('.xml'));
const materials = names.map((name) => [name, readFileSync(`${examples}${name}`, 'utf8')]);
materials.push(['a cube map', readsTexture('Cube', 'SurfaceWorldNormal', 'in_direction')]);
materials.push(['a volume', readsTexture('Volume', 'SurfaceObjectPosition', 'in_place')]);
for (const [name, material] of materials)
    test(`the surface agrees with the preview of ${name}`, async (t) => {
        const { page } = await prepare(t, material, { hasTextures: true });
        await settle(page);
        const found = await difference(page);
        const most = material.includes('"NoiseFractal"') ? { mean: 3, far: 0.1 } : { mean: 1, far: 0.015 };
        assert.ok(found.mean <= most.mean && found.far <= most.far, JSON.stringify(found));
    });

test('a dropped mesh carries the material as in the preview', async (t) => {
    const { folder, file, page } = await prepare(t, 'tinted_texture', { hasTextures: true });
    const mesh = new URL('../../../tests/preview/square.obj', import.meta.url).pathname;
    await settle(page);
    const shown = page.getByLabel('Mesh', { exact: true });
    await drop(page, '#surface', 'square.obj', readFileSync(mesh));
    await until(page, () => window.moxPicture.renderer.mesh.name === 'square.obj');
    await settle(page);
    execFileSync(mox, ['preview', file, '-o', `${folder}/square.png`, '--mesh', mesh, '--size', '256']);
    const { mean } = await difference(page, `${folder}/square.png`);
    assert.ok(mean < 1, `${mean}`);

    const failure = page.locator('#surface .problem.error');
    const reasons = [
        ['bad.obj', 'no mesh', /bad\.obj.*cannot be read/],
        ['bad.ply', 'ply', /expected a file with the extension \.obj, \.gltf or \.glb/],
        ['bad.obj', '', /empty/],
    ];
    for (const [name, content, reason] of reasons) {
        await drop(page, '#surface', name, content);
        await failure.getByText(reason).waitFor();
    }
    assert.equal(await shown.inputValue(), 'square.obj', 'the mesh stays');
    await page.setInputFiles('[aria-label="Mesh file"]', {
        name: 'bare.obj',
        mimeType: 'text/plain',
        buffer: Buffer.from('v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n'),
    });
    await page.locator('#surface .problem.warning', { hasText: 'has no texture coordinates' }).waitFor();
    assert.equal(await failure.count(), 0);
    await shown.selectOption('sphere');
    await until(page, () => document.querySelectorAll('#surface .problem').length === 0);
});
