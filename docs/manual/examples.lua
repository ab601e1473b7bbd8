-- SPDX-FileCopyrightText: 2026 the OverlayEditor authors
-- SPDX-License-Identifier: MIT
--
-- Pandoc filter. A code block with the attribute "example" gets the text of format/NAME.zel, which lies beside this
-- file, and with "picture" the picture NAME.png next to it:
--
--     ```{.zel example="circle" picture="A circle of 5 nautical miles"}
--     ```
--
-- The metadata "format-pictures" names the directory of the pictures as seen from the page; "pictures/format"
-- without it.

local directory = PANDOC_SCRIPT_FILE:match("^(.*)/[^/]*$") or "."
local pictures = "pictures/format"

local function readPictures(meta)
  if meta["format-pictures"] then pictures = pandoc.utils.stringify(meta["format-pictures"]) end
end

local function example(block)
  local name = block.attributes["example"]
  if not name then return nil end
  local file = assert(io.open(directory .. "/format/" .. name .. ".zel"))
  local code = pandoc.CodeBlock(file:read("a"):gsub("\n$", ""), pandoc.Attr("", block.classes))
  file:close()
  local caption = block.attributes["picture"]
  if not caption then return code end
  local image = pandoc.Image({pandoc.Str(caption)}, pictures .. "/" .. name .. ".png")
  return pandoc.Div({code, pandoc.Plain({image})}, pandoc.Attr("", {"example"}))
end

return {{Meta = readPictures}, {CodeBlock = example}}
