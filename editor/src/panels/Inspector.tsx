import { useState } from 'react';
import { parseNumbers } from '../model/numbers.ts';
import { textOf } from '../model/comparison.ts';
import type { CatalogueProperty, NodeState, ShownProperty } from '../model/messages.ts';
import { titleOf } from '../model/shape.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { ColourField, NumberField, TextField, type OnChange } from './fields.tsx';
import { AnnotationPanel } from './AnnotationPanel.tsx';
import { EdgePanel } from './EdgePanel.tsx';
import { MaterialForm } from './MaterialForm.tsx';
import { Palette } from './Palette.tsx';

export interface Lighting {
    light(ids: readonly string[]): void;
}

interface Row {
    property: ShownProperty;
    described: CatalogueProperty | undefined;
    isMixed: boolean;
}

/** The help of a property, without the name of the property at its start. */
function helpOf(row: Row): string {
    const help = row.described?.help ?? '';
    const prefix = `${row.property.name}: `;
    return help.startsWith(prefix) ? help.slice(prefix.length) : help;
}

function defaultText(described: CatalogueProperty): string | undefined {
    const value = described.default;
    if (value === null || value === undefined) return undefined;
    return Array.isArray(value) ? value.join(' ') : String(value);
}

function isDefault(row: Row): boolean {
    const wanted = row.described && defaultText(row.described);
    if (wanted === undefined || row.property.value === wanted) return true;
    const isNumeric = ['float', 'colour', 'integer'].includes(row.property.kind);
    const [have, want] = [parseNumbers(row.property.value), parseNumbers(wanted)];
    return (
        isNumeric &&
        !row.isMixed &&
        have.every((value, i) => Math.fround(value) === Math.fround(want[i] ?? 1))
    );
}

/** The properties that all nodes have in common, with the values of the first node. */
export function sharedRows(
    nodes: readonly NodeState[],
    describe: (node: NodeState, name: string) => CatalogueProperty | undefined,
): Row[] {
    const [first, ...others] = nodes;
    return (first?.properties ?? []).flatMap((property) => {
        const same = others.map((node) =>
            node.properties?.find((p) => p.name === property.name && p.kind === property.kind),
        );
        if (same.includes(undefined)) return [];
        return [
            {
                property: {
                    ...property,
                    editable: property.editable && same.every((p) => p!.editable),
                },
                described: describe(first!, property.name),
                isMixed: same.some((p) => p!.value !== property.value),
            },
        ];
    });
}

/** Properties that describe the node. They come last because they are rarely changed. */
const aboutTheNode = ['Type', 'Description', 'Help Url'];

function inOrderOfUse(rows: readonly Row[]): Row[] {
    const isAbout = (row: Row) => aboutTheNode.includes(row.property.name);
    return [...rows.filter((row) => !isAbout(row)), ...rows.filter(isAbout)];
}

function NodeField({ row, onChange, light }: { row: Row; onChange: OnChange; light: Lighting['light'] }) {
    const [isOpen, setOpen] = useState(false);
    const document = useSnapshot((all) => all.document);
    const { value, name, editable } = row.property;
    const choices = [
        { key: '', label: 'none' },
        ...[...document.nodes.values()].map((node) => ({
            key: node.record.id,
            label: titleOf(node),
            detail: node.record.id,
        })),
    ];
    return (
        <>
            <button disabled={!editable} aria-label={`${name}: choose a node`} onClick={() => setOpen(true)}>
                {value === '' ? 'none' : value}
            </button>
            {isOpen && (
                <Palette
                    title="Choose a node"
                    choices={choices}
                    onPointTo={(choice) => light(choice?.key ? [choice.key] : [])}
                    onClose={() => {
                        light([]);
                        setOpen(false);
                    }}
                    onPick={(choice) => {
                        light([]);
                        setOpen(false);
                        onChange(choice.key);
                    }}
                />
            )}
        </>
    );
}

function Field({ row, onChange, light }: { row: Row; onChange: OnChange; light: Lighting['light'] }) {
    const { property, described, isMixed } = row;
    const { name, kind, value, editable } = property;
    const common = { label: name, disabled: !editable, mixed: isMixed, onChange };
    switch (kind) {
        case 'bool':
            return (
                <input
                    type="checkbox"
                    aria-label={name}
                    disabled={!editable}
                    checked={value === 'true'}
                    ref={(box) => {
                        if (box) box.indeterminate = isMixed;
                    }}
                    onChange={(event) => onChange(String(event.target.checked))}
                />
            );
        case 'integer':
        case 'float':
            return (
                <NumberField
                    {...common}
                    value={Number(value)}
                    isWhole={kind === 'integer'}
                    range={described?.range}
                />
            );
        case 'colour':
            return <ColourField {...common} value={value} count={Math.min(4, parseNumbers(value).length)} />;
        case 'enum':
            return (
                <select
                    aria-label={name}
                    disabled={!editable}
                    value={isMixed ? '' : value}
                    onChange={(event) => onChange(event.target.value)}
                >
                    {isMixed && <option value="">mixed</option>}
                    {[...new Set([value, ...(described?.choices ?? [])])]
                        .sort((a, b) => order(described, a) - order(described, b))
                        .map((choice) => (
                            <option key={choice}>{choice}</option>
                        ))}
                </select>
            );
        case 'node':
            return <NodeField row={row} onChange={onChange} light={light} />;
        default:
            return (
                <>
                    <TextField
                        {...common}
                        value={value}
                        isLong={name === 'Description' || value.includes('\n')}
                    />
                    {/^https?:\/\//.test(value) && (
                        <a
                            href={value}
                            target="_blank"
                            rel="noopener noreferrer"
                            aria-label={`Open ${value}`}
                        >
                            ↗
                        </a>
                    )}
                </>
            );
    }
}

function order(described: CatalogueProperty | undefined, choice: string): number {
    const at = described?.choices?.indexOf(choice) ?? -1;
    return at < 0 ? 1e6 : at;
}

/** The properties of the selection. */
export function Inspector({ light }: Lighting) {
    const editor = useEditor();
    const document = useSnapshot((all) => all.document);
    const selection = useSnapshot((all) => all.selection);
    const selectedEdge = useSnapshot((all) => all.selectedEdge);
    const selectedAnnotations = useSnapshot((all) => all.selectedAnnotations);
    const catalogue = useSnapshot((all) => all.catalogue);
    const problems = useSnapshot((all) => all.problems);
    const differences = useSnapshot((all) => all.comparison)?.differences ?? [];
    const haveThumbnails = useSnapshot(() =>
        editor.selection.nodes().every((node) => editor.thumbnails.isShownOn(node)),
    );
    const nodes = [...selection].flatMap((number) => document.nodes.get(number) ?? []);
    const edge = selectedEdge === null ? undefined : document.edges.get(selectedEdge);
    if (edge) return <EdgePanel edge={edge} />;
    const first = nodes[0];
    const [annotation] = editor.selection.annotations();
    if (!first && annotation && selectedAnnotations.size === 1)
        return <AnnotationPanel annotation={annotation} />;
    if (!first) return <MaterialForm />;
    const describe = (node: NodeState, name: string) =>
        catalogue.get(node.record.type)?.properties.find((property) => property.name === name);
    const rows = inOrderOfUse(sharedRows(nodes, describe));
    const set =
        (row: Row): OnChange =>
        (value, gesture) =>
            editor.values.setProperties(
                nodes.map((node) => ({
                    node: node.record.id,
                    name: row.property.name,
                    kind: row.property.kind,
                    value,
                })),
                gesture,
            );
    const own = problems.filter((problem) => nodes.some((node) => node.record.id === problem.node));
    return (
        <section className="panel" id="inspector" aria-label="Inspector">
            <h2>
                {nodes.length === 1 ? titleOf(first) : `${nodes.length} nodes`}
                {nodes.some(({ outputs }) => outputs?.length) && (
                    <button
                        className="fold"
                        aria-pressed={haveThumbnails}
                        aria-label="Small images"
                        title="Show small images on the selected nodes"
                        onClick={() => editor.thumbnails.toggleOf(nodes)}
                    >
                        ▣
                    </button>
                )}
            </h2>
            {nodes.length === 1 && (
                <div className="row id">
                    <label title="Edges and other nodes refer to the node by this id.">id</label>
                    <TextField
                        label="id"
                        value={first.record.id}
                        onChange={(id) => editor.graph.rename(first.record.id, id)}
                    />
                </div>
            )}
            {rows.map((row) => {
                const { name, editable } = row.property;
                const canReset = editable && row.described !== undefined && !isDefault(row);
                return (
                    <div key={`${first.number} ${name}`} className={`row ${editable ? '' : 'locked'}`}>
                        <label title={helpOf(row)}>{name}</label>
                        <Field row={row} onChange={set(row)} light={light} />
                        <button
                            className="reset"
                            hidden={!canReset}
                            title="Reset to the default"
                            aria-label={`${name}: reset to the default`}
                            onClick={() => set(row)(defaultText(row.described!)!)}
                        >
                            ↺
                        </button>
                    </div>
                );
            })}
            {differences
                .filter(({ node }) => nodes.length === 1 && node === first.record.id)
                .map((difference) => (
                    <p key={difference.text} className={`difference ${difference.kind}`}>
                        <b>In the file:</b> {textOf(difference)}
                    </p>
                ))}
            {own.map((problem) => (
                <p key={problem.rule + problem.message} className={`problem ${problem.severity}`}>
                    {problem.message}
                </p>
            ))}
        </section>
    );
}
