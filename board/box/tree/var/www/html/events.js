"use strict";

// Follows the event server of the board. What arrives is shown as text, whatever it holds: the cause
// of a restart is not escaped on its way, so a message need not be JSON.

const server = `https://${location.hostname}:8080/sse-event`;
const retryAfter = 1000; // milliseconds
const mostRows = 200;

const restart = "VANTORIX-MSAN-MIB:RebootStatusIndication";

const byId = (id) => document.getElementById(id);

function showConnection(text, state) {
  byId("connection").textContent = text;
  byId("connection").className = state;
}

function parse(text) {
  try {
    return JSON.parse(text)["ietf-restconf:notification"];
  } catch {
    return undefined;
  }
}

// The cause as it stands between the quotes, for a message that is no JSON.
function rawCause(text) {
  const found = text.match(/"lastRestartCause": "([^]*)"\s*}\s*}\s*}\s*$/);
  return found ? found[1] : undefined;
}

function rawTime(text) {
  const found = text.match(/"eventTime": "([^"]*)"/);
  return found ? found[1] : "";
}

function showRestart(cause, time) {
  byId("cause").textContent = cause === "" ? "(no cause recorded)" : cause;
  byId("restartTime").textContent = time;
}

function addRow(id, time, text) {
  const row = byId("events").insertRow(0);
  for (const value of [id, time, text]) row.insertCell().textContent = value;
  while (byId("events").rows.length > mostRows) byId("events").deleteRow(-1);
}

function onMessage(message) {
  const notification = parse(message.data);
  const time = notification?.eventTime ?? rawTime(message.data);
  const cause = notification?.[restart]?.lastRestartCause ?? rawCause(message.data);
  if (cause !== undefined) showRestart(cause, time);
  addRow(message.lastEventId, time, cause === undefined ? message.data : `restarted: ${cause}`);
}

function connect() {
  const events = new EventSource(server);
  events.onopen = () => {
    byId("events").replaceChildren(); // the server tells again what it kept
    showConnection("connected", "up");
  };
  events.onerror = () => {
    showConnection("connection lost, trying again", "lost");
    events.close();
    setTimeout(connect, retryAfter);
  };
  events.addEventListener("events", onMessage);
  events.onmessage = onMessage;
}

connect();
