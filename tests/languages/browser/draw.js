// Opens a page in a headless Chromium with software rendering. The request and the response are
// files. The page is draw.html, or index.html in a folder whose other files the page may fetch.
// Usage: node draw.js REQUEST ANSWER [FOLDER]

const fs = require('fs');
const http = require('http');
const os = require('os');
const path = require('path');
const { spawn } = require('child_process');

const [request, answer, folder] = process.argv.slice(2);
const profile = fs.mkdtempSync(path.join(os.tmpdir(), 'mox_browser_'));
const limit = 240 * 1000;
let browser = null;

function end(status, message) {
  if (message)
    console.error(message);
  if (browser) {
    browser.on('exit', () => {
      // Processes of the browser may still exist for a moment and write into its profile.
      fs.rmSync(profile, { recursive: true, force: true, maxRetries: 20, retryDelay: 100 });
      process.exit(status);
    });
    process.kill(-browser.pid, 'SIGKILL'); // all processes of the browser
  }
}

const server = http.createServer((incoming, outgoing) => {
  if (incoming.method === 'GET') {
    const file =
      incoming.url === '/request' ? request
      : folder ? path.join(folder, incoming.url === '/' ? 'index.html' : incoming.url)
      : incoming.url === '/' ? path.join(__dirname, 'draw.html')
      : '';
    if (!fs.existsSync(file)) {
      outgoing.writeHead(404).end();
      return;
    }
    const types = { '.html': 'text/html', '.js': 'text/javascript', '.png': 'image/png' };
    outgoing.setHeader('content-type', types[path.extname(file)] ?? 'text/plain');
    fs.createReadStream(file).pipe(outgoing);
    return;
  }
  const chunks = [];
  incoming.on('data', chunk => chunks.push(chunk));
  incoming.on('end', () => {
    outgoing.end();
    const body = Buffer.concat(chunks);
    if (incoming.url === '/answer')
      fs.writeFileSync(answer, body);
    end(incoming.url === '/answer' ? 0 : 1, incoming.url === '/answer' ? '' : body.toString());
  });
});
server.listen(0, '127.0.0.1', () => {
  browser = spawn('chromium', [
    '--headless', '--no-sandbox', '--disable-gpu-sandbox', '--enable-unsafe-swiftshader',
    '--enable-unsafe-webgpu', '--use-webgpu-adapter=swiftshader', `--user-data-dir=${profile}`,
    `http://127.0.0.1:${server.address().port}/`], { stdio: 'ignore', detached: true });
  browser.on('error', error => {
    console.error(String(error));
    process.exit(1);
  });
});
setTimeout(() => end(1, 'the browser has not answered in time'), limit);
