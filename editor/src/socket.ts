/** The way to the server. This is evaluated first, so that the connection is made while the rest of the page is. */

const tokenKey = 'mox-token';

/** The token is in the address once; it is taken out, so that it is in no history. */
function takeToken(): string | null {
    if (location.hash.length > 1) {
        sessionStorage.setItem(tokenKey, location.hash.slice(1));
        history.replaceState(null, '', '/');
    }
    return sessionStorage.getItem(tokenKey);
}

const token = takeToken();

export function openSocket(): WebSocket {
    return new WebSocket(`ws://${location.host}/socket`, ['mox-editor-1', token!]);
}

/** Null if this page does not know its token. */
export const firstSocket = token ? openSocket() : null;
