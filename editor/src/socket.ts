/** The connection to the server. This module is evaluated first, to connect while the rest of the page loads. */

const tokenKey = 'mox-token';

/** Reads the token from the address, and removes it there so that the history does not contain it. */
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

/** Null if this page does not have a token. */
export const firstSocket = token ? openSocket() : null;
