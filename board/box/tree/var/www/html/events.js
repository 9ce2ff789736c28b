"use strict";

// Follows the event server of the board. What arrives is shown as text, whatever it holds: the cause
// of a restart is not escaped on its way, so a message need not be JSON.

const server = `https://${location.hostname}:8080`;
const retryAfter = 1000; // milliseconds
const mostRows = 200;
const mostRemembered = 1000;

const restart = "VANTORIX-MSAN-MIB:RebootStatusIndication";

const byId = (id) => document.getElementById(id);

function showConnection(text, state) {
  byId("connection").textContent = text;
  byId("connection").className = state;
  byId("hint").hidden = state !== "lost";
}

function parse(text) {
  try {
    return JSON.parse(text)["ietf-restconf:notification"];
  } catch {
    return undefined;
  }
}

// The cause as it stands between the quotes. A message that was too long for the board's queue ends
// within it.
function recordedCause(text) {
  const found = text.match(/"lastRestartCause": "([^]*?)("\n {4}}\n {2}}\n})?$/);
  return found && { text: found[1], isWhole: found[2] !== undefined };
}

function recordedTime(text) {
  const found = text.match(/"eventTime": "([^"]*)"/);
  return found ? found[1] : "";
}

// What the board recorded comes before what JSON makes of it: a cause with a backslash can read as
// JSON and mean something else then.
function readNotification(text) {
  const content = parse(text);
  const recorded = recordedCause(text);
  const time = content?.eventTime ?? recordedTime(text);
  if (recorded?.isWhole) return { time, cause: recorded.text };
  const cause = content?.[restart]?.lastRestartCause;
  if (cause === undefined && recorded) {
    return { time, cause: `${recorded.text} [cut off by the board]` };
  }
  return { time, cause };
}

function showRestart(cause, time) {
  byId("cause").textContent = cause === "" ? "(no cause recorded)" : cause;
  byId("restartTime").textContent = time;
}

// A server that is reached again tells again what it kept.
const seen = new Set();

function addRow(id, time, text) {
  const row = byId("events").insertRow(0);
  for (const value of [id, time, text]) row.insertCell().textContent = value;
  while (byId("events").rows.length > mostRows) byId("events").deleteRow(-1);
}

function onMessage(message) {
  const key = `${message.lastEventId} ${message.data}`;
  if (seen.has(key)) return;
  seen.add(key);
  if (seen.size > mostRemembered) seen.delete(seen.values().next().value);
  const { time, cause } = readNotification(message.data);
  if (cause !== undefined) showRestart(cause, time);
  addRow(message.lastEventId, time, cause === undefined ? message.data : `restarted: ${cause}`);
}

function connect() {
  const events = new EventSource(`${server}/sse-event`);
  events.onopen = () => showConnection("connected", "up");
  events.onerror = () => {
    showConnection("connection lost, trying again", "lost");
    events.close();
    setTimeout(connect, retryAfter);
  };
  events.addEventListener("events", onMessage);
  events.onmessage = onMessage;
}

byId("server").href = server;
connect();
