-- What the help needs beyond pandoc's own rich text: room above headings, bold table heads, small examples.

local function rtf(code) return pandoc.RawInline('rtf', code) end

function Header(header)
  local sizes = { 28, 24, 22 }
  header.content:insert(1, rtf('\\sb280\\keepn\\fs' .. (sizes[header.level] or 22) .. ' '))
  return header
end

function CodeBlock(block)
  local lines = {}
  for line in (block.text .. '\n'):gmatch('(.-)\n') do
    lines[#lines + 1] = (line:gsub('[\\{}]', '\\%0'))
  end
  return pandoc.RawBlock('rtf', '{\\pard \\ql \\f1 \\fs18 \\sb60 \\sa180 \\li240 \\fi0 ' ..
    table.concat(lines, '\\line ') .. '\\par}')
end

function Table(tbl)
  for _, row in ipairs(tbl.head.rows) do
    for _, cell in ipairs(row.cells) do
      for _, block in ipairs(cell.contents) do
        if block.content then block.content = { pandoc.Strong(block.content) } end
      end
    end
  end
  return tbl
end
