-- SPDX-FileCopyrightText: 2026 the OverlayEditor authors
-- SPDX-License-Identifier: MIT

-- An overlay file in a chapter
--
--     ``` {.zel picture="circle" caption="A circle" options="--size 900x500"}
--     start
--     ...
--     ```
--
-- is followed by its picture, which the sandbox draws from that very text: it lands in the directory
-- $MANUAL_DRAWN, with the options for `halvis-sandbox --render` beside it.

local directory = os.getenv("MANUAL_DRAWN")

local function write(name, text)
  local file = assert(io.open(directory .. "/" .. name, "w"))
  file:write(text, "\n")
  file:close()
end

function CodeBlock(block)
  local name = block.attributes.picture
  if not name or not block.classes:includes("zel") then return nil end
  write(name .. ".zel", block.text)
  write(name .. ".options", block.attributes.options or "--size 900x420 --map graticule")
  local image = pandoc.Image(pandoc.Str(block.attributes.caption or ""), directory .. "/" .. name .. ".png", "fig:")
  return { pandoc.CodeBlock(block.text, { class = "zel" }), pandoc.Para({ image }) }
end
