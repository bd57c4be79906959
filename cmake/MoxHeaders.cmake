# The public headers of each library. Only these are installed: the headers that programs and
# plug-ins are meant to include, and those that they include in turn.
function(mox_add_headers target)
  list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/mox/)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${ARGN})
endfunction()

mox_add_headers(mox_materials
  Export.h
  InterfaceVersion.h
  ShaderError.h
  Text.h
  authoring/DiGraphNode.h
  authoring/GuiEdge.h
  authoring/GuiNode.h
  authoring/GuiNodeFactory.h
  authoring/GuiPort.h
  authoring/GuiProperty.h
  authoring/GuiPropertyBag.h
  bindings/Binding.h
  bindings/DocumentKeys.h
  bindings/FloatBinding.h
  bindings/FloatList.h
  bindings/Material.h
  bindings/StreamType.h
  bindings/StringBinding.h
  bindings/TextureBinding.h
  bindings/XmlAttributes.h
  nodekit/NodeBindings.h
  nodekit/NodeFunction.h
  nodekit/PortRebuild.h
  nodekit/PropertyDeclarations.h
  shader/InterfaceNodeProvider.h
  shader/ShaderEdge.h
  shader/ShaderFunction.h
  shader/ShaderFunctionBuilder.h
  shader/ShaderGraph.h
  shader/ShaderGraphGenerator.h
  shader/ShaderNode.h
  shader/ShaderRegister.h
  shader/ShaderType.h
)

mox_add_headers(mox_host
  batch/ExportBatch.h
  batch/MaterialFiles.h
  check/EnvironmentCheck.h
  check/MaterialCheck.h
  check/NodeFileCheck.h
  document/Catalogue.h
  document/DocumentTextures.h
  document/IndexedDocument.h
  document/MaterialDiff.h
  document/MaterialDocument.h
  document/OrderedSlots.h
  document/PropertyText.h
  graph/BindingsDocument.h
  graph/ChangeHistory.h
  graph/GraphChange.h
  graph/GraphCopy.h
  graph/GraphOrder.h
  graph/GraphResolver.h
  graph/GraphView.h
  graph/HostValues.h
  graph/MaterialGraph.h
  graph/NodeMaker.h
  graph/OpenMaterial.h
  graph/ShownItems.h
  host/AtomicFile.h
  host/AttributeText.h
  host/EndCleanup.h
  host/Exporter.h
  host/File.h
  host/HostError.h
  host/Picture.h
  host/Plugin.h
  host/PluginBinding.h
  host/PluginNode.h
  host/PluginSet.h
  host/Problem.h
  host/Xpm.h
  interchange/ReadMaterial.h
  json/ChangeJson.h
  json/ProblemReport.h
  languages/Precision.h
  layout/MaterialLayout.h
  nodefile/NodeFile.h
  nodefile/NodeFiles.h
  program/CgProgram.h
  program/CgWriter.h
  program/Environment.h
  program/EnvironmentUniform.h
  program/MaterialProgram.h
  program/ProgramExporter.h
  program/ProgramFormat.h
  program/ProgramPlan.h
  program/ProgramStage.h
  program/ShaderGeneration.h
  program/ShaderGraphText.h
  program/ShaderOrigins.h
  targets/CompileTarget.h
  targets/CompiledProgram.h
  targets/MadePrograms.h
  targets/ProgramTranslator.h
  targets/Reflection.h
  targets/TargetCheck.h
  targets/TargetFormat.h
)

if(TARGET mox_compile)
  mox_add_headers(mox_compile
    targets/ProgramCompiler.h
  )
endif()

if(TARGET mox_pictures)
  mox_add_headers(mox_pictures
    pictures/Graphviz.h
    pictures/MaterialPicture.h
    pictures/ShaderPicture.h
  )
endif()

if(TARGET mox_preview)
  mox_add_headers(mox_preview
    decode/DecodedFile.h
    decode/FileDecoder.h
    decode/OpenFile.h
    decode/TextureCache.h
    preview/LightPanorama.h
    preview/MaterialPreview.h
    preview/MeshShapes.h
    preview/Scene.h
  )
endif()

# The editor's interface is the only one with JSON values.
mox_add_headers(mox_editor
  editor/DocumentLock.h
  editor/EditedDocument.h
  editor/EditorJob.h
  editor/EditorServices.h
  editor/EditorSession.h
  editor/Journal.h
  json/JsonText.h
)
