import { noMoves, type Moves } from './annotations.ts';
import type { Comparison } from './comparison.ts';
import type { Catalogue } from './connect.ts';
import { emptyDocument, type DocumentState, type Point } from './document.ts';
import type { Placement } from './edits.ts';
import type { MaterialParts, Problem, Waiting } from './messages.ts';
import type { Parameter, SentValues } from './parameters.ts';

export interface Programs {
    vertex: string;
    fragment: string;
    reflection: string;
}

export interface AddMenu {
    /** The position of the menu on the screen. */
    at: Point;
    /** The position of the new node in the graph. */
    point: Point;
    placement: Placement;
}

export interface Thumbnail {
    /** The document's meaning when the image was rendered, see Snapshot.meaning. */
    meaning: number;
    /** Missing if the node cannot be rendered. */
    picture?: ImageData;
}

export interface Pinned {
    node: string;
    port: string;
    picture?: ImageData;
}

/** The state of the page. It is immutable: each change creates a new snapshot. */
export interface Snapshot {
    file: string;
    document: DocumentState;
    catalogue: Catalogue;
    materialParts: MaterialParts;
    /** The languages in which the server can compile. */
    targets: readonly string[];
    revision: number;
    /** Incremented by each change that can affect programs or images. */
    meaning: number;
    unsaved: boolean;
    undo: string;
    redo: string;
    waiting: Waiting | null;
    /** The unanswered messages if the connection is lost, otherwise null. */
    lost: object[] | null;
    /** How the document differs from the file; null if the differences are not shown. */
    comparison: Comparison | null;
    fileChange: { differences: string[]; error: string } | null;
    selection: ReadonlySet<number>;
    /** The numbers of the selected frames and notes. */
    selectedAnnotations: ReadonlySet<number>;
    selectedEdge: number | null;
    /** The index of the selected point in the selected edge. */
    selectedPoint: number | null;
    /** The positions of items that are being dragged or whose move is not confirmed yet. */
    moves: Moves;
    problems: readonly Problem[];
    /** The programs of the preview. While the material has errors, they are those of an earlier revision. */
    programs: Programs | null;
    isPictureStale: boolean;
    parameters: readonly Parameter[];
    sentValues: SentValues;
    pinned: Pinned | null;
    /** Whether nodes show a small image of their first output. */
    hasThumbnails: boolean;
    /** The numbers of the nodes for which the opposite of hasThumbnails applies. */
    thumbnailExceptions: ReadonlySet<number>;
    /** Small images by node id. */
    thumbnails: ReadonlyMap<string, Thumbnail>;
    addMenu: AddMenu | null;
    /** The name of the mesh that the host provides; empty if there is none. */
    ownMesh: string;
    /** How many times this page has laid out the whole graph. */
    layouts: number;
    /** The latest message, for the status line and for screen readers. */
    message: string;
}

const empty: Snapshot = {
    file: '',
    document: emptyDocument,
    catalogue: new Map(),
    materialParts: { description: [], renderState: [] },
    targets: [],
    revision: 0,
    meaning: 0,
    unsaved: false,
    undo: '',
    redo: '',
    waiting: null,
    lost: null,
    comparison: null,
    fileChange: null,
    selection: new Set(),
    selectedAnnotations: new Set(),
    selectedEdge: null,
    selectedPoint: null,
    moves: noMoves,
    problems: [],
    programs: null,
    isPictureStale: false,
    parameters: [],
    sentValues: new Map(),
    pinned: null,
    hasThumbnails: false,
    thumbnailExceptions: new Set(),
    thumbnails: new Map(),
    addMenu: null,
    ownMesh: '',
    layouts: 0,
    message: '',
};

/** The current snapshot. Listeners are called after each change. */
export class Store {
    private snapshot = empty;
    private readonly listeners = new Set<() => void>();

    get(): Snapshot {
        return this.snapshot;
    }

    subscribe = (listener: () => void): (() => void) => {
        this.listeners.add(listener);
        return () => this.listeners.delete(listener);
    };

    set(changes: Partial<Snapshot>): void {
        this.snapshot = { ...this.snapshot, ...changes };
        for (const listener of this.listeners) listener();
    }

    say(message: string): void {
        this.set({ message });
    }
}
