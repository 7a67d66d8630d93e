/**
 * Five characters for four bytes, and for the last few one more than bytes: a quarter more, where base64 takes a
 * third. The digits are those from "!" on, with "~" for "<", which might end the element.
 */
export function base85(bytes) {
  let text = "";
  for (let at = 0; at < bytes.length; at += 4) {
    const some = Buffer.alloc(4);
    const count = bytes.copy(some, 0, at, at + 4);
    let word = some.readUInt32BE();
    let digits = "";
    for (let digit = 0; digit < 5; ++digit) {
      digits = String.fromCharCode(33 + (word % 85)) + digits;
      word = Math.floor(word / 85);
    }
    text += digits.slice(0, count + 1);
  }
  return text.replaceAll("<", "~");
}
