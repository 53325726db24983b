// The functions of module.h for scripts: what `createQob()` resolves to has these methods. Names are
// strings, files are Uint8Arrays.
//
//   const qob = await createQob({sha256, onProgress});
//   qob.putFile("qob.prm", bytes);
//   const {status, text} = qob.command("qob", "qob.prm");
//   for (const name of qob.fileNames()) save(name, qob.takeFile(name));
//
// `sha256()` makes what has update(bytes) and digest(), which returns the bytes of a checksum;
// reports need it. `onProgress(text)`, if given, is told how far a long command is.
// A command takes its time: a page does it in a worker. Without memory for a file or a name a method
// throws; clearFiles() helps. After a WebAssembly.RuntimeError (the stack has overflown, for one) the
// module is not to be used again.
{
  // Calls `work` with the address of a copy of `bytes`, null when there is no room for one.
  const withCopy = (bytes, work) => {
    const address = _malloc(Math.max(bytes.length, 1)) >>> 0;  // beyond 2 GB, too
    if (address === 0) return work(null);
    HEAPU8.set(bytes, address);
    try {
      return work(address);
    } finally {
      _free(address);
    }
  };
  const withName = (name, work) =>
    withCopy(new TextEncoder().encode(name + "\0"), (address) => {
      if (address === null) throw new RangeError("no memory for a file name");
      return work(address);
    });

  // Throws a RangeError when there is not enough memory.
  Module.putFile = (name, bytes) => withName(name, (nameAddress) =>
    withCopy(bytes, (address) => {
      if (address === null || !_qob_put_file(nameAddress, address, bytes.length)) {
        throw new RangeError("no memory for file " + name);
      }
    }));

  // `status` 0 is success; `text` says how the command ended, if not by itself.
  Module.command = (...words) => {
    const bytes = new TextEncoder().encode(words.map((word) => word + "\0").join(""));
    const status = withCopy(bytes, (address) => {
      if (address === null) throw new RangeError("no memory for a command");
      return _qob_command(address, bytes.length);
    });
    return {status, text: UTF8ToString(_qob_end_text())};
  };

  Module.fileNames = () => {
    const names = [];
    for (let name; (name = _qob_file_name(names.length)) !== 0;) names.push(UTF8ToString(name));
    return names;
  };

  // A copy; undefined if there is no such file.
  Module.takeFile = (name) => withName(name, (nameAddress) => {
    const address = _qob_file_bytes(nameAddress) >>> 0;
    if (address === 0) return undefined;
    return HEAPU8.slice(address, address + (_qob_file_size(nameAddress) >>> 0));
  });

  Module.removeFile = (name) => withName(name, (address) => _qob_remove_file(address));
  Module.clearFiles = () => _qob_clear_files();

  const ready = Module.onRuntimeInitialized;
  Module.onRuntimeInitialized = () => {
    if (Module.onProgress) _qob_tell_progress();
    if (ready) ready();
  };
}
