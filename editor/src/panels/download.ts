/** Passes a file to the browser, which saves it in its download folder or asks where to save it. */
export function download(name: string, type: string, text: string): void {
    const address = URL.createObjectURL(new Blob([text], { type }));
    const link = document.createElement('a');
    link.href = address;
    link.download = name;
    link.click();
    URL.revokeObjectURL(address);
}
