// Reads a container by its index with the format's own reader, and tells what is in it: chunks, sums, topics, messages.
// NODE_PATH=.../node_modules node read-mcap.cjs FILE
const { McapIndexedReader, McapStreamReader } = require("@mcap/core");
const fs = require("fs");

async function main(path) {
  const file = fs.readFileSync(path);
  const source = {
    size: async () => BigInt(file.length),
    read: async (offset, length) => new Uint8Array(file.subarray(Number(offset), Number(offset + length))),
  };
  const reader = await McapIndexedReader.Initialize({ readable: source });
  const { messageCount, messageStartTime, messageEndTime, chunkCount } = reader.statistics;
  console.log(`${messageCount} messages, ${chunkCount} chunks, ${messageStartTime} to ${messageEndTime}`);
  const topics = new Map();
  let before = 0n;
  for await (const message of reader.readMessages({ validateCrcs: true })) {
    const channel = reader.channelsById.get(message.channelId);
    const told = topics.get(channel.topic) ?? { schema: reader.schemasById.get(channel.schemaId), count: 0 };
    const json = JSON.parse(Buffer.from(message.data).toString());
    if (message.logTime < before) throw new Error("not in the order of time");
    if (BigInt(json.timestamp.sec) * 1000000000n + BigInt(json.timestamp.nsec) !== message.logTime) throw new Error("time");
    before = message.logTime;
    const properties = JSON.parse(Buffer.from(told.schema.data).toString()).properties;
    for (const key in json) if (!(key in properties)) throw new Error(`${key} is not in ${told.schema.name}`);
    told.last = json;
    ++told.count;
    topics.set(channel.topic, told);
  }
  for (const [topic, told] of [...topics].sort()) {
    console.log(`${topic} ${told.schema.name} ${told.count} ${JSON.stringify(told.last)}`);
  }
  // Every byte from the begin on, as one without an index reads it.
  const stream = new McapStreamReader({ validateCrcs: true });
  stream.append(new Uint8Array(file));
  let count = 0n;
  for (let record; (record = stream.nextRecord()); ) {
    if (record.type === "Message") ++count;
    if (record.type === "Footer" && record.summaryCrc === 0) throw new Error("no sum");  // 0 would go unchecked
  }
  if (!stream.done() || count !== messageCount) throw new Error(`${count} messages in the stream`);
}

main(process.argv[2]).catch((error) => {
  console.log(error.message);
  process.exit(1);
});
