import { firstSocket, openSocket } from './socket.ts';
import '@xyflow/react/dist/base.css';
import './style.css';
import { createRoot } from 'react-dom/client';
import { App } from './App.tsx';
import { Connection } from './model/connection.ts';
import { Editor } from './editor.ts';
import { EditorContext } from './useEditor.ts';

const retryDelay = 3000; // milliseconds
const mostRetries = 20;
const serverEnds = 1001;

/** Connects to the server, and reconnects if the connection is lost while the server is still running. */
function connect(editor: Editor, socket: WebSocket, retries: number): void {
    const connection = new Connection(socket, {
        onNotice: (notice) => editor.receiver.notice(notice),
        onClosed: (unanswered, code) => {
            editor.receiver.lose(unanswered);
            if (code !== serverEnds && retries > 0)
                setTimeout(() => connect(editor, openSocket(), retries - 1), retryDelay);
        },
    });
    const goodbye = () => socket.close(1000);
    socket.addEventListener('open', () => {
        retries = mostRetries;
        void editor.receiver.open(connection);
    });
    socket.addEventListener('close', () => window.removeEventListener('pagehide', goodbye));
    window.addEventListener('pagehide', goodbye);
}

function show(socket: WebSocket): void {
    const editor = new Editor();
    Object.assign(window, { moxEditor: editor }); // for tests and benchmarks
    connect(editor, socket, mostRetries);
    window.addEventListener('beforeunload', (event) => {
        if (editor.store.get().unsaved && !editor.store.get().lost) event.preventDefault();
    });
    createRoot(document.getElementById('root')!).render(
        <EditorContext value={editor}>
            <App />
        </EditorContext>,
    );
}

if (firstSocket) show(firstSocket);
else
    document.getElementById('root')!.textContent =
        'Open the address that “mox edit” printed. This address does not contain the token that gives access to your document.';
