// Reads everything that is sent to SQL Server with a parser of its language: the statements of tests/data, those in the
// sources, and the DDL. Says what cannot be read, and that a broken statement is refused.
// usage: script/tsql/check, which installs the parser first
'use strict';

const fs = require('fs');
const path = require('path');
const { execFileSync } = require('child_process');
const { CharStreams, CommonTokenStream, Token } = require('antlr4ts');
const grammar = 'antlr4ts-sql/dist/src';
const { TSqlLexer } = require(`${grammar}/grammar-output/tsql/TSqlLexer`);
const { TSqlParser } = require(`${grammar}/grammar-output/tsql/TSqlParser`);
const { CaseChangingStream } = require(`${grammar}/models/CaseChangingStream`);

const bin = 'build/release/bin';

// Functions that the grammar takes for any name; what is not here is not the server's.
const functions = new Set(['left', 'right', 'year', 'month', 'isnull', 'object_id', 'patindex']);

const broken = [
  "select * from sys_gksz order gkbh",
  "select * from sys_gksz where gkbh='x'limit 1",
  'select * from `sys_gksz`',
  "select ifnull(gkmc,'') from sys_gksz",
  "select * from sys_gksz where rtrim(gkbh)='x' collate nocase",
  'insert into sys_gksz(gkbh,gkmc) values(?,?',
  'update sys_gksz set gkmc=? gkbh=?',
  'create table t (a text, b real check (typeof(b) = 1), index (a), engine=InnoDB)',
];

// The first thing about the text that the server would not take, or nothing.
function fault(text) {
  const faults = [];
  const listener = { syntaxError: (recognizer, symbol, line, column, message) =>
    faults.push(`${line}:${column} ${message.slice(0, 80)}`) };
  // Marks of values are the driver's; to the language they are variables.
  const named = text.replace(/'(?:[^']|'')*'|\?/g, (part) => (part === '?' ? '@value' : part));
  const lexer = new TSqlLexer(new CaseChangingStream(CharStreams.fromString(named), true));
  const tokens = new CommonTokenStream(lexer);
  const parser = new TSqlParser(tokens);
  for (const recognizer of [lexer, parser]) {
    recognizer.removeErrorListeners();
    recognizer.addErrorListener(listener);
  }
  parser.tsql_file();
  const seen = tokens.getTokens().filter((token) => token.channel === Token.DEFAULT_CHANNEL);
  const word = (at) => (seen[at] ? named.slice(seen[at].startIndex, seen[at].stopIndex + 1).toLowerCase() : '');
  seen.forEach((token, at) => {
    if (word(at) === 'collate' && !word(at + 1).startsWith('chinese_prc_'))
      faults.push(`the server has no collation ${word(at + 1)}`);
    if (token.type === TSqlLexer.ID && word(at + 1) === '(' && !functions.has(word(at)) &&
        !['into', 'table', 'on'].includes(word(at - 1)))
      faults.push(`the server has no function ${word(at)}`);
  });
  return faults[0];
}

function sourcesBelow(folder) {
  return fs.readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const name = path.join(folder, entry.name);
    if (entry.isDirectory())
      return sourcesBelow(name);
    return entry.name.endsWith('.cpp') || entry.name.endsWith('.h') ? [name] : [];
  });
}

// Adjacent literals are one text, through names that stand for some too; one that the code adds something to is no
// whole statement.
function statementsIn(file) {
  let source = fs.readFileSync(file, 'utf8').replace(/^\s*\/\/.*$/gm, '').replace(/\\\n/g, ' ');
  for (const [definition, name, text] of source.matchAll(/^#define (\w+)\s+(".*")\s*$/gm))
    source = source.replace(definition, '').replace(new RegExp(`\\b${name}\\b`, 'g'), () => text);
  source = source.replace(/^#.*$/gm, '');
  const literal = '(?:R"\\([\\s\\S]*?\\)"|"(?:[^"\\\\\\n]|\\\\.)*")';
  const found = [];
  for (const match of source.matchAll(new RegExp(`${literal}(?:\\s*${literal})*`, 'g'))) {
    const text = match[0].match(new RegExp(literal, 'g'))
      .map((part) => (part[0] === 'R' ? part.slice(3, -2) : part.slice(1, -1).replace(/\\n/g, '\n').replace(/\\(.)/g, '$1')))
      .join('');
    const added = /\+\s*$/.test(source.slice(0, match.index)) ||
      /^\s*\+/.test(source.slice(match.index + match[0].length));
    if (!added && /^\s*(select|insert|update|delete|set)\b[\s\S]*\s\S/i.test(text))
      found.push(text);
  }
  return found;
}

// Of the library that speaks to all engines, only the part of this one.
const isOthers = (file) => file.startsWith('src/data/') && !file.startsWith('src/data/sql_server');
const inSources = sourcesBelow('src').filter((file) => !isOthers(file)).flatMap(statementsIn);
const statements = [...new Set([...JSON.parse(fs.readFileSync('tests/data/statements.json', 'utf8')), ...inSources])];
const sent = JSON.parse(execFileSync(`${bin}/tradewick-bound-statements`, { input: JSON.stringify(statements) }));
const ddl = execFileSync(`${bin}/tradewick-database`, ['script', 'sqlserver'], { encoding: 'utf8' })
  .split(/^GO$/m).filter((batch) => batch.trim());

let failed = false;
function say(text) {
  failed = true;
  console.error(text);
}
for (const text of [...sent, ...ddl]) {
  const found = fault(text);
  if (found)
    say(`${text}\n    ${found}`);
}
for (const text of broken)
  if (!fault(text))
    say(`${text}\n    is read although it is broken`);
if (inSources.length < 50 || ddl.length < 50)
  say(`only ${inSources.length} statements in the sources and ${ddl.length} batches of DDL were found`);
console.log(`script/tsql: ${sent.length} statements and ${ddl.length} batches of DDL read`);
process.exit(failed ? 1 : 0);
