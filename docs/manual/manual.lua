-- An overlay file in a chapter
--
--     ``` {.zel picture="circle" caption="A circle" options="--size 900x500"}
--     start
--     ...
--     ```
--
-- is followed by its picture, which the sandbox draws from that very text: it lands in the directory
-- $MANUAL_DRAWN, with the options for `halvis-sandbox --render` beside it.
--
--     ``` {.zel example="circle" caption="A circle" options="--view 21,-158,20000"}
--     ```
--
-- is the file format/circle.zel, with a small picture on white beside it when there is a caption.

local directory = os.getenv("MANUAL_DRAWN")
local examples = PANDOC_SCRIPT_FILE:gsub("[^/]*$", "") .. "format/"

local function write(name, text)
  local file = assert(io.open(directory .. "/" .. name, "w"))
  file:write(text, "\n")
  file:close()
end

local function read(name)
  local file = assert(io.open(examples .. name))
  local text = file:read("a")
  file:close()
  return (text:gsub("\n$", ""))
end

function CodeBlock(block)
  local name, example, caption = block.attributes.picture, block.attributes.example, block.attributes.caption
  if not (name or example) or not block.classes:includes("zel") then return nil end
  local code = pandoc.CodeBlock(example and read(example .. ".zel") or block.text, { class = "zel" })
  if not name and not caption then return code end
  local options = block.attributes.options
  if example then
    name = name or example
    options = "--size 480x300 --background white " .. (options or "")
  end
  write(name .. ".zel", code.text)
  write(name .. ".options", options or "--size 900x420 --map graticule")
  local image = pandoc.Image(pandoc.Str(caption or ""), directory .. "/" .. name .. ".png", "fig:")
  if not example then return { code, pandoc.Para({ image }) } end
  return pandoc.Div({ pandoc.Div(code), pandoc.Para({ image }) }, { class = "example" })
end

-- Columns are as wide as the dashes below their heads say, where the text says anything about it. Short tables stay
-- on one page.
function Table(block)
  if block.colspecs[1][2] then block.classes:insert("fixed") end
  if #block.bodies[1].body <= 8 then block.classes:insert("short") end
  return block
end
