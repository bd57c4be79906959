import { Annotations } from './commands/annotations.ts';
import { Clipboard } from './commands/clipboard.ts';
import { MaterialFile } from './commands/file.ts';
import { Graph } from './commands/graph.ts';
import { Places } from './commands/places.ts';
import { Values } from './commands/values.ts';
import { Assets } from './model/assets.ts';
import { Changes } from './model/changes.ts';
import { Comparer } from './model/comparer.ts';
import { Compiler } from './model/compiler.ts';
import { CompileTimer } from './model/compileTimer.ts';
import { PinnedOutput, Thumbnails } from './model/pictures.ts';
import { Receiver } from './model/receiver.ts';
import { Selection } from './model/selection.ts';
import { Server } from './model/server.ts';
import { Store } from './model/store.ts';

/**
 * The parts of the editor. Each depends only on earlier ones; only the timer calls a later one, the compiler.
 * Commands send changes to the server, the receiver updates the snapshot in the store from the answers, and the
 * page shows the snapshot.
 */
export class Editor {
    readonly store = new Store();
    readonly server = new Server(this.store);
    readonly selection = new Selection(this.store);
    readonly compileTimer = new CompileTimer(() => void this.compiler.compile());
    readonly pinned = new PinnedOutput(this.store, this.server, this.compileTimer);
    readonly thumbnails = new Thumbnails(this.store, this.server, this.compileTimer);
    readonly compiler = new Compiler(
        this.store,
        this.server,
        this.compileTimer,
        this.pinned,
        this.thumbnails,
    );
    readonly comparer = new Comparer(this.store, this.server);
    readonly assets = new Assets(this.store, this.server);
    readonly receiver = new Receiver(
        this.store,
        this.server,
        this.compileTimer,
        this.comparer,
        this.thumbnails,
    );

    readonly changes = new Changes(this.store, this.server, this.compileTimer, this.receiver);
    readonly values = new Values(this.store, this.changes);
    readonly places = new Places(this.store, this.changes, this.selection);
    readonly annotations = new Annotations(this.store, this.changes, this.selection, this.places);
    readonly graph = new Graph(this.store, this.server, this.changes, this.selection, this.annotations);
    readonly file = new MaterialFile(this.store, this.server, this.changes, this.comparer);
    readonly clipboard = new Clipboard(
        this.store,
        this.server,
        this.changes,
        this.selection,
        this.places,
        this.graph,
    );
}
